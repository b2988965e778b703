#include "command/run_board.h"

#include <csignal>
#include <cstring>
#include <iostream>
#include <stdexcept>

#include "launch/listening.h"

namespace board {
namespace {

// An impatient user gets rid of a daemon that does not end.
constexpr int kInterruptsUntilKill = 3;

constexpr int kSignalStatus = 128;  // and the signal's number

void explain_fallback() {
  std::cerr << "qxboard: cannot make a private root here: " << private_root_obstacle()
            << "\nqxboard: using proot instead: it works, but is slower, and the daemon sees the "
               "rest of this machine.\nqxboard: For a private root, install bubblewrap and allow "
               "user namespaces\nqxboard: (sysctl kernel.unprivileged_userns_clone=1, or run "
               "outside a restricted container).\n";
}

// Daemons share the port without a word, and the kernel deals the clients out among them.
void refuse_shared_port() {
  if (!listening(kDaemonPort)) return;
  throw std::runtime_error("something listens on port " + std::to_string(kDaemonPort) +
                           " already, perhaps another board; end it first");
}

void explain_end(int status) {
  if (status == 0) return;
  std::cerr << "qxboard: the daemon ";
  if (status > kSignalStatus) {
    const int signal = status - kSignalStatus;
    std::cerr << "was ended by signal " << signal << " (" << ::strsignal(signal) << ")\n";
  } else {
    std::cerr << "ended with status " << status << '\n';
  }
}

sigset_t watched_signals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGQUIT, SIGHUP, SIGCHLD})
    sigaddset(&signals, signal);
  return signals;
}

int follow(Board& board) {
  const sigset_t signals = watched_signals();
  int interrupts = 0;
  for (;;) {
    if (const auto status = board.wait(Board::Milliseconds(0))) return *status;
    const int signal = ::sigwaitinfo(&signals, nullptr);
    if (signal <= 0 || signal == SIGCHLD) continue;
    board.signal(++interrupts < kInterruptsUntilKill ? signal : SIGKILL);
  }
}

}  // namespace

int run_in_foreground(const std::string& name_or_file, const BoardOptions& options) {
  const sigset_t signals = watched_signals();
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  // The reader of our output may be gone; the board still has to be stopped.
  ::signal(SIGPIPE, SIG_IGN);
  refuse_shared_port();
  Board board(name_or_file, options);
  if (options.isolation == Isolation::kAuto && board.isolation() == Isolation::kProot) {
    explain_fallback();
  }
  std::cerr << "qxboard: board " << board.description().name << ", state in "
            << board.state().string() << '\n';
  board.start();
  const int status = follow(board);
  explain_end(status);
  return status;
}

}  // namespace board
