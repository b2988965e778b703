#include "pqclient/connection.h"

#include <linux/sockios.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <memory>
#include <sstream>
#include <system_error>
#include <thread>

namespace pqclient {
namespace {

using std::chrono::milliseconds;

constexpr const char* kForwardHint = "try: adb forward tcp:5543 tcp:5543";

std::string error_text(int error) {
  return std::generic_category().message(error);
}

// "5 s", "0.3 s"
std::string seconds(milliseconds time) {
  std::ostringstream text;
  text << static_cast<double>(time.count()) / 1000.0 << " s";
  return text.str();
}

// False if the deadline passed first. A socket error counts as ready: the next call on the socket
// reports it.
bool wait_until_ready(int socket, short events, const Deadline& deadline) {
  pollfd entry{.fd = socket, .events = events, .revents = 0};
  for (;;) {
    const int result = poll(&entry, 1, static_cast<int>(deadline.left().count()));
    if (result >= 0 || errno != EINTR) return result != 0;
  }
}

struct FreeAddresses {
  void operator()(addrinfo* list) const { freeaddrinfo(list); }
};
using AddressList = std::unique_ptr<addrinfo, FreeAddresses>;

AddressList look_up(const Address& address) {
  addrinfo wanted{};
  wanted.ai_family = AF_UNSPEC;
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  const std::string port = std::to_string(address.port);
  const int result = getaddrinfo(address.host.c_str(), port.c_str(), &wanted, &list);
  if (result != 0) {
    throw Error(ErrorKind::kConnect, "cannot find the host \"" + address.host + "\": " +
                                         gai_strerror(result) + ". Give its address with --host");
  }
  return AddressList(list);
}

// 0, or the errno of an error on the connection.
int pending_error(int socket) {
  int error = 0;
  socklen_t size = sizeof error;
  return getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) != 0 ? errno : error;
}

// Returns 0 or the errno of the failure.
int connect_before(int socket, const addrinfo& to, const Deadline& deadline) {
  if (connect(socket, to.ai_addr, to.ai_addrlen) == 0) return 0;
  if (errno != EINPROGRESS && errno != EINTR) return errno;
  if (!wait_until_ready(socket, POLLOUT, deadline)) return ETIMEDOUT;
  return pending_error(socket);
}

}  // namespace

std::string Address::text() const {
  const bool is_ipv6 = host.find(':') != std::string::npos;
  return (is_ipv6 ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

Address parse_address(std::string_view text) {
  const auto refuse = [text](const char* why) -> Error {
    return {ErrorKind::kInput,
            "\"" + std::string(text) + "\" " + why +
                ": write HOST, HOST:PORT or [IPV6]:PORT, such as 192.0.2.7:5543"};
  };
  const bool has_brackets = text.starts_with('[');
  const bool is_bare_ipv6 = !has_brackets && std::ranges::count(text, ':') > 1;
  const std::size_t end = has_brackets   ? text.find(']')
                          : is_bare_ipv6 ? text.size()
                                         : std::min(text.find(':'), text.size());
  if (end == std::string_view::npos) throw refuse("has no closing bracket");
  Address address;
  address.host = text.substr(has_brackets ? 1 : 0, end - (has_brackets ? 1 : 0));
  if (address.host.empty()) throw refuse("has no host");
  std::string_view rest = text.substr(has_brackets ? end + 1 : end);
  if (rest.empty()) return address;
  if (!rest.starts_with(':')) throw refuse("is not an address");
  rest.remove_prefix(1);
  const auto [last, error] = std::from_chars(rest.data(), rest.data() + rest.size(), address.port);
  if (error != std::errc() || last != rest.data() + rest.size() || address.port == 0) {
    throw refuse("has no valid port");
  }
  return address;
}

milliseconds Deadline::left() const {
  // Rounded up: a wait of 0 ms for the last fraction would spin.
  const auto rest = std::chrono::ceil<milliseconds>(end_ - std::chrono::steady_clock::now());
  return std::clamp(rest, milliseconds(0), milliseconds(3'600'000));
}

Connection::Connection(const Address& address, Deadline deadline) : address_(address.text()) {
  const AddressList list = look_up(address);
  int error = 0;
  for (const addrinfo* entry = list.get(); entry != nullptr; entry = entry->ai_next) {
    socket_ = socket(entry->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (socket_ < 0) {
      error = errno;
      continue;
    }
    error = connect_before(socket_, *entry, deadline);
    if (error == 0) break;
    close(std::exchange(socket_, -1));
  }
  if (socket_ < 0) {
    throw Error(ErrorKind::kConnect, "cannot connect to " + address_ + ": " + error_text(error) +
                                         ". Is the server running? For a board on USB " +
                                         kForwardHint);
  }
  // A packet must leave in one piece, without waiting for the acknowledgement of the one before.
  const int on = 1;
  (void)setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

Connection& Connection::operator=(Connection&& other) noexcept {
  std::swap(address_, other.address_);
  std::swap(socket_, other.socket_);
  return *this;
}

Connection::~Connection() {
  if (socket_ >= 0) close(socket_);
}

bool Connection::is_idle() const {
  std::uint8_t byte = 0;
  return recv(socket_, &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0 && errno == EAGAIN;
}

std::string Connection::busy_text(const Deadline& deadline) const {
  return address_ + " has taken no more bytes for " + seconds(deadline.budget()) +
         ": the server is busy or has stopped";
}

Error Connection::lost_while_sending(int error) const {
  return {ErrorKind::kConnectionLost,
          "lost the connection to " + address_ + " while sending: " + error_text(error)};
}

void Connection::send_all(ByteView bytes, Deadline deadline) {
  while (!bytes.empty()) {
    const ssize_t sent = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent >= 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(sent));
    } else if (errno == EAGAIN) {
      if (!wait_until_ready(socket_, POLLOUT, deadline)) {
        throw Error(ErrorKind::kTimeout, busy_text(deadline));
      }
    } else if (errno != EINTR) {
      throw lost_while_sending(errno);
    }
  }
}

void Connection::wait_until_arrived(Deadline deadline) {
  constexpr milliseconds kPause{2};
  for (int waiting = 0; ioctl(socket_, SIOCOUTQ, &waiting) == 0 && waiting > 0;) {
    // After a reset, bytes that were waiting are reported as waiting for ever.
    if (const int error = pending_error(socket_); error != 0) throw lost_while_sending(error);
    if (deadline.left() == milliseconds(0)) throw Error(ErrorKind::kTimeout, busy_text(deadline));
    std::this_thread::sleep_for(kPause);
  }
}

// Empty if the deadline passed first, 0 if the board has closed the connection.
std::optional<std::size_t> Connection::try_receive(std::span<std::uint8_t> into,
                                                   const Deadline& deadline) {
  for (;;) {
    const ssize_t received = recv(socket_, into.data(), into.size(), 0);
    if (received >= 0) return static_cast<std::size_t>(received);
    if (errno == EAGAIN) {
      if (!wait_until_ready(socket_, POLLIN, deadline)) return std::nullopt;
    } else if (errno != EINTR) {
      throw Error(ErrorKind::kConnectionLost,
                  "lost the connection to " + address_ +
                      " while waiting for the answer: " + error_text(errno));
    }
  }
}

std::size_t Connection::receive_some(std::span<std::uint8_t> into, Deadline deadline) {
  const auto received = try_receive(into, deadline);
  if (received) return *received;
  throw Error(ErrorKind::kTimeout, "no answer within " + seconds(deadline.budget()) + " from " +
                                       address_ + ": is the server running? " + kForwardHint);
}

void Connection::receive_exactly(std::span<std::uint8_t> into, Deadline deadline) {
  for (std::size_t done = 0; done < into.size();) {
    const std::string progress =
        "after " + std::to_string(done) + " of " + std::to_string(into.size()) + " bytes";
    const auto received =
        done == 0 ? receive_some(into, deadline) : try_receive(into.subspan(done), deadline);
    if (!received) {
      throw Error(ErrorKind::kTimeout, "the answer from " + address_ + " stopped " + progress +
                                           ", for " + seconds(deadline.budget()));
    }
    if (*received == 0) {
      // adb accepts connections even if nothing listens on the board, then closes them.
      throw Error(
          ErrorKind::kConnectionLost,
          address_ + " closed the connection " + progress +
              ": the server has stopped, or adb forwards the port and no server listens there");
    }
    done += *received;
  }
}

}  // namespace pqclient
