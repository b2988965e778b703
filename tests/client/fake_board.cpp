#include "client/fake_board.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>

using pqclient::Bytes;
using pqclient::ByteView;

// Exactly n bytes; fewer when the client closes first.
Bytes Visitor::receive(std::size_t n, int flags) {
  Bytes bytes(n);
  const ssize_t received = recv(socket_, bytes.data(), n, MSG_WAITALL | flags);
  bytes.resize(received > 0 ? static_cast<std::size_t>(received) : 0);
  return bytes;
}

Request Visitor::receive_request() {
  const Bytes start = receive(4, MSG_PEEK);
  if (start.size() < 4) return {};
  if (std::ranges::equal(start, pqclient::kDocumentMagic)) {
    pqclient::DocumentHeader header{};
    const Bytes head = receive(sizeof header);
    std::memcpy(&header, head.data(), head.size());
    const Bytes rest = receive(header.data_length + 4);
    EXPECT_EQ(rest.size(), header.data_length + 4);
    return {Request::Kind::kDocument, header.command, {rest.begin(), rest.end() - 4}};
  }
  if (std::ranges::equal(start, pqclient::kCommandMagic.substr(0, 4))) {
    pqclient::CommandPacket packet{};
    const Bytes whole = receive(sizeof packet);
    EXPECT_EQ(whole.size(), sizeof packet);
    std::memcpy(&packet, whole.data(), whole.size());
    return {Request::Kind::kCommand,
            packet.command,
            {packet.data.begin(), packet.data.begin() + packet.data_length}};
  }
  // Up to the next packet, if that is here already: a slow machine must not fail a test.
  Bytes chunk(pqclient::kReceiveSize);
  chunk.resize(static_cast<std::size_t>(recv(socket_, chunk.data(), chunk.size(), MSG_PEEK)));
  const auto& magic = pqclient::kDocumentMagic;
  const auto next = std::search(chunk.begin(), chunk.end(), magic.begin(), magic.end());
  const Bytes stray = receive(static_cast<std::size_t>(next - chunk.begin()));
  return {Request::Kind::kStray, 0, {stray.begin(), stray.end()}};
}

std::string Visitor::receive_text(pqclient::DocumentCommand expected) {
  const Request request = receive_request();
  EXPECT_EQ(request.kind, Request::Kind::kDocument);
  EXPECT_EQ(request.command, static_cast<std::uint32_t>(expected));
  return request.text;
}

void Visitor::send(ByteView bytes) {
  ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

void Visitor::reply(std::string_view text) {
  const auto length = static_cast<std::uint32_t>(text.size() + 2);
  const std::uint32_t words[] = {0x58FFAA51, 0, 1, 1, length, length};
  const auto* head = reinterpret_cast<const std::uint8_t*>(words);
  Bytes packet(head, head + sizeof words);
  packet.push_back('[');
  packet.insert(packet.end(), text.begin(), text.end());
  packet.resize(packet.size() + 5);
  send(packet);
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
