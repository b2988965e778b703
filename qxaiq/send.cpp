#include "qxaiq/send.h"

#include <sys/socket.h>

#include <cerrno>
#include <chrono>

#include "base/quit.h"

namespace pq {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kMaxStall{30};

bool worth_waiting_for(Clock::time_point last_progress) {
  return !quit_requested && Clock::now() - last_progress < kMaxStall;
}

}  // namespace

ssize_t send_all(int socket, std::span<const char> bytes) {
  // Usually one call sends everything; the loop is for a full socket buffer. TCPServer gives each
  // client's socket a send time-out, so a blocked call returns here several times a second, and a
  // client that reads little by little cannot delay shutdown either.
  Clock::time_point last_progress = Clock::now();
  std::span<const char> rest = bytes;
  for (;;) {
    // MSG_NOSIGNAL and not an ignored SIGPIPE: programs that we start would inherit that.
    const ssize_t sent = sendto(socket, rest.data(), rest.size(), MSG_NOSIGNAL, nullptr, 0);
    if (sent > 0) {
      rest = rest.subspan(static_cast<size_t>(sent));
      last_progress = Clock::now();
    } else if (sent < 0 && errno != EINTR && errno != EAGAIN) {
      return -1;
    }
    if (rest.empty()) return static_cast<ssize_t>(bytes.size());
    if (!worth_waiting_for(last_progress)) {
      // Half a reply has been sent: the client could not tell where the next packet begins.
      shutdown(socket, SHUT_RDWR);
      return -1;
    }
  }
}

}  // namespace pq
