// The time until a process ends after a signal, measured by the kernel's notification.
#ifndef TESTS_SUPPORT_PROCESS_END_H_
#define TESTS_SUPPORT_PROCESS_END_H_

#include <poll.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include <chrono>
#include <optional>

// Watches one process, not necessarily a child of ours, from its construction on.
class ProcessEnd {
 public:
  explicit ProcessEnd(pid_t process)
      : descriptor_(static_cast<int>(syscall(SYS_pidfd_open, process, 0))) {}
  ~ProcessEnd() { close(descriptor_); }
  ProcessEnd(const ProcessEnd&) = delete;
  ProcessEnd& operator=(const ProcessEnd&) = delete;

  void signal(int number) const {
    (void)syscall(SYS_pidfd_send_signal, descriptor_, number, nullptr, 0);
  }

  // The time from this call to the process's exit; empty if it still runs after the timeout.
  [[nodiscard]] std::optional<std::chrono::milliseconds> wait(
      std::chrono::milliseconds timeout) const {
    const auto start = std::chrono::steady_clock::now();
    pollfd ended{descriptor_, POLLIN, 0};
    if (poll(&ended, 1, static_cast<int>(timeout.count())) != 1) return std::nullopt;
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 start);
  }

 private:
  int descriptor_;
};

#endif  // TESTS_SUPPORT_PROCESS_END_H_
