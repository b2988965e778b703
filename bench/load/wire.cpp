#include "load/wire.h"

#include <arpa/inet.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <utility>

#include "launch/listening.h"
#include "pqclient/packets.h"

namespace load {
namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void fail(const char* what) {
  throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

template <typename Value>
void set_option(int socket, int level, int option, const Value& value) {
  if (setsockopt(socket, level, option, &value, sizeof(value)) != 0) fail("setsockopt");
}

sockaddr_in address(uint32_t host, uint16_t port) {
  sockaddr_in result{};
  result.sin_family = AF_INET;
  result.sin_addr.s_addr = htonl(host);
  result.sin_port = htons(port);
  return result;
}

// A reset connection keeps the bytes that it could not send.
bool is_closed(int socket) {
  tcp_info info{};
  socklen_t size = sizeof(info);
  if (getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size) != 0) fail("getsockopt");
  return info.tcpi_state == TCP_CLOSE;
}

uint16_t local_port(int socket) {
  sockaddr_in own{};
  socklen_t size = sizeof(own);
  if (getsockname(socket, reinterpret_cast<sockaddr*>(&own), &size) != 0) fail("getsockname");
  return ntohs(own.sin_port);
}

}  // namespace

Wire::Wire(uint32_t source, int receive_buffer)
    : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  if (socket_ < 0) fail("socket");
  try {
    set_option(socket_, SOL_SOCKET, SO_RCVTIMEO, timeval{kPatience.count(), 0});
    set_option(socket_, SOL_SOCKET, SO_SNDTIMEO, timeval{kPatience.count(), 0});
    set_option(socket_, IPPROTO_TCP, TCP_NODELAY, 1);
    // Allows very many connections to find a port. An emulated kernel may not support it.
    const int on = 1;
    (void)setsockopt(socket_, IPPROTO_IP, IP_BIND_ADDRESS_NO_PORT, &on, sizeof(on));
    if (receive_buffer > 0) set_option(socket_, SOL_SOCKET, SO_RCVBUF, receive_buffer);
    const sockaddr_in from = address(source, 0);
    if (bind(socket_, reinterpret_cast<const sockaddr*>(&from), sizeof(from)) != 0) fail("bind");
    const sockaddr_in to = address(kLoopback, pqclient::kDefaultPort);
    if (connect(socket_, reinterpret_cast<const sockaddr*>(&to), sizeof(to)) != 0) fail("connect");
  } catch (...) {
    close(socket_);
    throw;
  }
}

Wire::~Wire() {
  if (socket_ >= 0) close(socket_);
}

Wire::Wire(Wire&& other) noexcept : socket_(std::exchange(other.socket_, -1)) {}

Wire& Wire::operator=(Wire&& other) noexcept {
  std::swap(socket_, other.socket_);
  return *this;
}

void Wire::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0) fail("send");
    bytes.remove_prefix(static_cast<size_t>(sent));
  }
}

void Wire::wait_until_taken() const {
  constexpr std::chrono::microseconds kPause{200};
  const uint16_t port = local_port(socket_);
  const auto end = Clock::now() + kPatience;
  int on_the_way = 0;
  while ((ioctl(socket_, SIOCOUTQ, &on_the_way) == 0 && on_the_way > 0) ||
         board::holds_unread_bytes(pqclient::kDefaultPort, port)) {
    if (is_closed(socket_)) throw std::runtime_error("the daemon closed the connection");
    if (Clock::now() > end) throw std::runtime_error("the daemon stopped reading");
    std::this_thread::sleep_for(kPause);
  }
}

void Wire::finish_sending() {
  // Fails if the daemon has closed already; nothing needs to be told then.
  (void)shutdown(socket_, SHUT_WR);
}

size_t Wire::receive_some(char* into, size_t size) {
  const ssize_t received = recv(socket_, into, size, 0);
  if (received < 0) fail("recv");
  return static_cast<size_t>(received);
}

std::string Wire::receive(size_t size) {
  std::string bytes(size, '\0');
  for (size_t done = 0; done < size;) {
    const size_t received = receive_some(bytes.data() + done, size - done);
    if (received == 0) {
      throw std::runtime_error("the daemon closed the connection after " + std::to_string(done) +
                               " of " + std::to_string(size) + " bytes");
    }
    done += received;
  }
  return bytes;
}

std::string Wire::receive_rest() {
  std::string bytes;
  std::array<char, 65536> part{};
  while (const size_t received = receive_some(part.data(), part.size()))
    bytes.append(part.data(), received);
  return bytes;
}

void Wire::reset() {
  set_option(socket_, SOL_SOCKET, SO_LINGER, linger{1, 0});
  close(std::exchange(socket_, -1));
}

}  // namespace load
