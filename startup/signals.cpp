#include "startup/signals.h"

#include <array>
#include <csignal>

#include "base/log.h"
#include "base/quit.h"

namespace {

constexpr std::array<int, 3> kShutdownSignals = {SIGINT, SIGQUIT, SIGTERM};

// The mask for the main thread's wait: today's, without the shutdown signals and without SIGCHLD,
// which our parent may have left blocked.
sigset_t mask_while_waiting() {
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  for (const int signal : kShutdownSignals)
    sigdelset(&mask, signal);
  sigdelset(&mask, SIGCHLD);
  return mask;
}

}  // namespace

void block_signals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  for (const int signal : kShutdownSignals)
    sigaddset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void install_signal_handlers() {
  for (const int signal : kShutdownSignals) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = signal_handle;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
}

void wait_for_shutdown(const TCPServer& server) {
  const sigset_t mask = mask_while_waiting();
  while (!pq::quit_requested && !server.stopped())
    sigsuspend(&mask);
}

void signal_handle(int sig) {
  block_signals();  // a second signal must not interrupt the log call
  pq::log_error()("signal_handle %d ", sig);
  pq::quit_requested = true;
}
