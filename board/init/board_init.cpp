// The board's first process: starts the companion programs and the daemon, passes signals on to the
// daemon, and ends, with everything that was started, when the daemon ends.
//
//   board_init --status FD [--set NAME=VALUE]... [--companion PROGRAM]... -- DAEMON [ARGUMENT]...
//
// Only the launcher starts it, inside the private root or without one. It exits with the daemon's
// status, 128 + N after signal N. The environment set here is for what it starts, not for itself:
// the preloaded libraries are the daemon's, not the launcher's.
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "init/status.h"

namespace {

struct Command {
  int status_socket = -1;
  std::vector<std::string> environment;  // NAME=VALUE
  std::vector<std::string> companions;
  std::vector<std::string> daemon;
};

Command parse(int argc, char** argv) {
  Command command;
  int i = 1;
  for (; i + 1 < argc && std::string_view(argv[i]) != "--"; i += 2) {
    const std::string_view option = argv[i];
    if (option == "--status") command.status_socket = std::atoi(argv[i + 1]);
    if (option == "--set") command.environment.emplace_back(argv[i + 1]);
    if (option == "--companion") command.companions.emplace_back(argv[i + 1]);
  }
  command.daemon.assign(argv + std::min(i + 1, argc), argv + argc);
  return command;
}

void send_status(int socket, board::StatusKind kind, int value) {
  const board::StatusMessage message{kind, value};
  // A launcher that has gone away needs no answer.
  (void)::send(socket, &message, sizeof(message), MSG_NOSIGNAL);
}

sigset_t handled_signals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : {SIGCHLD, SIGINT, SIGQUIT, SIGTERM, SIGHUP, board::kEndNow}) {
    sigaddset(&set, signal);
  }
  return set;
}

// When the launcher is killed, nothing it started may stay. As the first process of a namespace
// this one is killed (bubblewrap arranged that) and the kernel ends the rest; elsewhere it has to
// do so.
void end_with_launcher() {
  if (::getpid() != 1) ::prctl(PR_SET_PDEATHSIG, board::kEndNow);
}

// status_socket: -1 for a companion. Returns the process id.
pid_t start(const std::vector<std::string>& program, const Command& command, int status_socket) {
  std::vector<char*> arguments;
  arguments.reserve(program.size() + 1);
  for (const auto& argument : program)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);

  const pid_t child = ::fork();
  if (child != 0) return child;
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  const sigset_t signals = handled_signals();
  ::sigprocmask(SIG_UNBLOCK, &signals, nullptr);
  for (const auto& setting : command.environment)
    ::putenv(const_cast<char*>(setting.c_str()));
  if (status_socket >= 0) send_status(status_socket, board::StatusKind::kStarted, 0);
  ::close(command.status_socket);
  ::execv(arguments[0], arguments.data());
  std::fprintf(stderr, "board: cannot start %s: %s\n", arguments[0], std::strerror(errno));
  ::_exit(127);
}

void report_lost_companion(const std::string& program, int status) {
  if (WIFSIGNALED(status)) {
    std::fprintf(stderr, "board: %s was ended by signal %d\n", program.c_str(), WTERMSIG(status));
  } else {
    std::fprintf(stderr, "board: %s ended with status %d\n", program.c_str(), WEXITSTATUS(status));
  }
}

// Reaps everything until the daemon ends; returns its wait status.
int wait_for_daemon(pid_t daemon, const std::map<pid_t, std::string>& companions) {
  const sigset_t signals = handled_signals();
  for (;;) {
    int status = 0;
    for (pid_t child = 0; (child = ::waitpid(-1, &status, WNOHANG)) > 0;) {
      if (child == daemon) return status;
      const auto companion = companions.find(child);
      if (companion != companions.end()) report_lost_companion(companion->second, status);
    }
    const int signal = ::sigwaitinfo(&signals, nullptr);
    if (signal <= 0 || signal == SIGCHLD) continue;
    ::kill(daemon, signal == board::kEndNow ? SIGKILL : signal);
  }
}

// Ends what is left: companions, and orphans, which the kernel hands to this process. One that
// forks meanwhile is met in the next round.
void end_the_rest() {
  const std::string children = "/proc/self/task/" + std::to_string(::getpid()) + "/children";
  do {
    std::ifstream list(children);
    for (pid_t child = 0; list >> child;)
      ::kill(child, SIGKILL);
  } while (::waitpid(-1, nullptr, 0) > 0 || errno == EINTR);
}

// Companions may end in order, within a second.
void end_companions(std::map<pid_t, std::string> companions) {
  for (const auto& [process, program] : companions)
    ::kill(process, SIGTERM);
  constexpr timespec kStep{0, 5'000'000};
  for (int step = 0; step < 200 && !companions.empty(); ++step) {
    for (pid_t child = 0; (child = ::waitpid(-1, nullptr, WNOHANG)) != 0;) {
      if (child < 0) return;
      companions.erase(child);
    }
    if (!companions.empty()) ::nanosleep(&kStep, nullptr);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const Command command = parse(argc, argv);
  if (command.status_socket < 0 || command.daemon.empty()) {
    std::fprintf(stderr, "board_init: is started by the launcher only (qxboard run)\n");
    return 2;
  }
  const sigset_t signals = handled_signals();
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  end_with_launcher();
  ::prctl(PR_SET_CHILD_SUBREAPER, 1);
  send_status(command.status_socket, board::StatusKind::kUp, 0);

  std::map<pid_t, std::string> companions;
  for (const auto& program : command.companions) {
    companions[start({program}, command, -1)] = program;
  }
  const pid_t daemon = start(command.daemon, command, command.status_socket);
  if (daemon < 0) {
    std::fprintf(stderr, "board: cannot start the daemon: %s\n", std::strerror(errno));
    return 1;
  }
  const int status = wait_for_daemon(daemon, companions);
  end_companions(companions);
  end_the_rest();
  send_status(command.status_socket, board::StatusKind::kEnded, status);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}
