#include "client/fake_board.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <utility>

using pqclient::Bytes;
using pqclient::ByteView;

// Exactly n bytes; fewer if the client closes first.
Bytes Visitor::receive(std::size_t n) {
  Bytes bytes(n);
  const ssize_t received = recv(socket_, bytes.data(), n, MSG_WAITALL);
  bytes.resize(received > 0 ? static_cast<std::size_t>(received) : 0);
  return bytes;
}

std::string Visitor::receive_request() {
  pqclient::DocumentHeader header{};
  const Bytes head = receive(sizeof header);
  if (head.size() < sizeof header) return "";
  std::memcpy(&header, head.data(), head.size());
  if (header.magic != pqclient::kDocumentMagic) {
    receive(sizeof(pqclient::CommandPacket) - sizeof header);
    return "";
  }
  const Bytes rest = receive(header.data_length + pqclient::kDocumentTrailerSize);
  EXPECT_EQ(rest.size(), header.data_length + pqclient::kDocumentTrailerSize);
  return {rest.begin(), rest.end() - pqclient::kDocumentTrailerSize};
}

void Visitor::send(ByteView bytes) {
  ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

Bytes document_reply(std::string_view text) {
  const auto length = static_cast<std::uint32_t>(text.size() + 2);
  const std::uint32_t words[] = {0x58FFAA51, 0, 1, 1, length, length};
  const auto* head = reinterpret_cast<const std::uint8_t*>(words);
  Bytes packet(head, head + sizeof words);
  packet.push_back('[');
  packet.insert(packet.end(), text.begin(), text.end());
  packet.resize(packet.size() + 5);
  return packet;
}

void Visitor::stall() {
  std::uint8_t byte = 0;
  while (recv(socket_, &byte, 1, 0) > 0) {
  }
}

FakeBoard::FakeBoard(std::function<void(Visitor&)> script)
    : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in local{};
  local.sin_family = AF_INET;
  local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof local;
  auto* name = reinterpret_cast<sockaddr*>(&local);
  EXPECT_EQ(bind(listener_, name, size), 0);
  EXPECT_EQ(listen(listener_, 4), 0);
  EXPECT_EQ(getsockname(listener_, name, &size), 0);
  port_ = ntohs(local.sin_port);
  thread_ = std::thread([this, play = std::move(script)] {
    for (;;) {
      const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      if (client < 0) return;  // the test is over
      const timeval limit{.tv_sec = 10, .tv_usec = 0};
      setsockopt(client, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
      Visitor visitor(client);
      play(visitor);
      close(client);
    }
  });
}

FakeBoard::~FakeBoard() {
  shutdown(listener_, SHUT_RDWR);  // wakes the accept
  thread_.join();
  close(listener_);
}
