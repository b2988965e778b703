// Replacements for the C library's calls that start programs, wait and send. The linker redirects
// calls to them (see CMakeLists.txt).
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>

#include "fuzz/support/board.h"
#include "fuzz/support/check.h"

extern "C" {

pid_t __wrap_fork() {
  constexpr pid_t kSomeChild = 4711;
  return fuzz::board.programs_start ? kSomeChild : -1;
}

int __wrap_clock_nanosleep(clockid_t /*clock*/, int /*flags*/, const timespec* /*time*/,
                           timespec* /*left*/) {
  return 0;
}

ssize_t __wrap_sendto(int socket, const void* bytes, size_t size, int flags,
                      const sockaddr* /*address*/, socklen_t /*length*/) {
  fuzz::require((flags & MSG_NOSIGNAL) != 0, "no send can raise a signal");
  std::string& sent = fuzz::board.sent[socket];
  if (fuzz::board.sends_are_cut) {
    static bool interrupted = false;
    interrupted = !interrupted;
    if (interrupted) {
      errno = sent.size() % 2 == 0 ? EINTR : EAGAIN;
      return -1;
    }
    size = std::min(size, size / 2 + 1);
  }
  sent.append(static_cast<const char*>(bytes), size);
  return static_cast<ssize_t>(size);
}

}  // extern "C"
