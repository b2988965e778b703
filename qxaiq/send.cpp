#include "qxaiq/send.h"

#include <sys/socket.h>

#include <cerrno>
#include <chrono>

#include "base/quit.h"

namespace pq {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kLongestStall{30};

bool worth_waiting_for(Clock::time_point last_progress) {
  return !quit_requested && Clock::now() - last_progress < kLongestStall;
}

}  // namespace

ssize_t send_all(int socket, std::span<const char> bytes) {
  // Usually one call sends everything; the loop is for a full socket buffer. The socket's send
  // time-out (0.3 seconds) brings a blocked call back here, also from a client that reads little
  // by little: such a one must not hold up the end of the process either.
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
      // Half a reply is on the wire; nothing that follows could be read as a packet.
      shutdown(socket, SHUT_RDWR);
      return -1;
    }
  }
}

}  // namespace pq
