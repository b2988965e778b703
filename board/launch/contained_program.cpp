#include "launch/contained_program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace board {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPollStep{1};
constexpr milliseconds kEndTimeout{5000};
constexpr milliseconds kEndSignalPause{100};
constexpr int kReportDescriptor = 3;
constexpr int kSignalStatus = 128;  // and the signal's number

// Runs in the container: reports that it is there with an empty line, gives the program its
// environment, which the shell itself and the container must not have (it preloads libraries), and
// reports the program's status, without a word of its own when a signal ended the program. proot
// would tell the status of whichever process was the last to end.
constexpr const char* kShell =
    "echo >&3; "
    "while [ \"$1\" != -- ]; do export \"$1\"; shift; done; shift; "
    "exec 4>&2 2>/dev/null; \"$@\" 2>&4 3>&- 4>&-; echo $? >&3";

// Enough for the container to find programs, and nothing that changes how libraries load.
const std::vector<std::string> kCleanEnvironment = {"PATH=/usr/bin:/bin:/usr/sbin:/sbin"};

std::vector<char*> pointers(const std::vector<std::string>& words) {
  std::vector<char*> result;
  result.reserve(words.size() + 1);
  for (const auto& word : words)
    result.push_back(const_cast<char*>(word.c_str()));
  result.push_back(nullptr);
  return result;
}

std::vector<std::string> command_line(const Container& container,
                                      const std::vector<std::string>& program,
                                      const std::vector<std::string>& environment) {
  auto command = container.command;
  command.insert(command.end(), {"/bin/sh", "-c", kShell, "sh"});
  command.insert(command.end(), environment.begin(), environment.end());
  command.emplace_back("--");
  command.insert(command.end(), program.begin(), program.end());
  return command;
}

// With its own session, so that a Ctrl-C on the terminal reaches the launcher alone, which then
// ends the daemon in order.
pid_t spawn(const std::vector<std::string>& command, int output, int report) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO);
  posix_spawn_file_actions_adddup2(&actions, report, kReportDescriptor);
  posix_spawn_file_actions_addclosefrom_np(&actions, kReportDescriptor + 1);

  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigset_t all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setflags(
      &attributes,
      static_cast<short>(POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
  pid_t process = -1;
  const int error = posix_spawnp(&process, command[0].c_str(), &actions, &attributes,
                                 pointers(command).data(), pointers(kCleanEnvironment).data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    throw std::runtime_error("cannot start " + command[0] + ": " + std::strerror(error));
  }
  return process;
}

// The shell's empty line arrives, or the pipe's end when there will be no shell.
bool has_started(int descriptor) {
  char letter = 0;
  ssize_t count = 0;
  do {
    count = ::read(descriptor, &letter, 1);
  } while (count < 0 && errno == EINTR);
  return count > 0;
}

// The program's status as the shell reported it; none when the shell was killed first.
std::optional<int> reported_status(int descriptor) {
  pollfd waiting{descriptor, POLLIN, 0};
  std::array<char, 8> text{};
  if (::poll(&waiting, 1, 0) <= 0 || ::read(descriptor, text.data(), text.size() - 1) <= 0) {
    return std::nullopt;
  }
  return std::atoi(text.data());
}

// Waits for the process's only child, which may come a moment later. None when the process ends
// without one, or had one that was too quick to be seen.
Process only_child(const Process& process) {
  const std::string id = std::to_string(process.id());
  const std::string children = "/proc/" + id + "/task/" + id + "/children";
  for (;;) {
    pid_t child = 0;
    if (std::ifstream(children) >> child) return Process(child);
    if (process.has_ended(milliseconds(0))) return {};
    std::this_thread::sleep_for(kPollStep);
  }
}

}  // namespace

Process::Process(pid_t id)
    : id_(id), descriptor_(static_cast<int>(::syscall(SYS_pidfd_open, id, 0))) {}

bool Process::has_ended(milliseconds timeout) const {
  if (!descriptor_.valid()) return true;
  const auto end = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    const auto left =
        std::chrono::ceil<milliseconds>(end - std::chrono::steady_clock::now()).count();
    pollfd waiting{descriptor_.get(), POLLIN, 0};
    const int result = ::poll(&waiting, 1, left > 0 ? static_cast<int>(left) : 0);
    if (result >= 0 || errno != EINTR) return result > 0;
  }
}

void Process::signal(int number) const {
  if (descriptor_.valid()) {
    (void)::syscall(SYS_pidfd_send_signal, descriptor_.get(), number, nullptr, 0);
  }
}

ContainedProgram::ContainedProgram(const Container& container,
                                   const std::vector<std::string>& program,
                                   const std::vector<std::string>& environment, int output)
    : end_signal_(container.end_signal) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) {
    throw std::runtime_error(std::string("cannot make a pipe: ") + std::strerror(errno));
  }
  report_ = FileDescriptor(ends[0]);
  {
    const FileDescriptor theirs(ends[1]);
    container_ =
        Process(spawn(command_line(container, program, environment), output, theirs.get()));
  }
  if (!has_started(report_.get())) {
    end_container();
    throw std::runtime_error("the board did not start; its log says why");
  }
  shell_ = only_child(container_);
  program_ = only_child(shell_);
}

// proot overlooks a process that is just being forked; told again, it ends that one, too.
void ContainedProgram::end_traced_processes() const {
  const auto end = std::chrono::steady_clock::now() + kEndTimeout;
  do {
    container_.signal(end_signal_);
  } while (!container_.has_ended(kEndSignalPause) && std::chrono::steady_clock::now() < end);
}

ContainedProgram::~ContainedProgram() {
  if (!status_) end_container();
}

// Ends what is left and keeps the status. The kernel ends a private root's processes with the
// shell, which is their first one; proot ends the processes that it traces when it is told to.
void ContainedProgram::end_container() {
  shell_.signal(SIGKILL);
  if (end_signal_ != 0) end_traced_processes();
  if (!container_.has_ended(kEndTimeout)) container_.signal(SIGKILL);
  siginfo_t information{};
  while (::waitid(P_PID, static_cast<id_t>(container_.id()), &information, WEXITED) != 0 &&
         errno == EINTR) {
  }
  // bubblewrap, when it is killed itself, is gone a moment before the processes that go with it.
  (void)shell_.has_ended(kEndTimeout);
  status_ = reported_status(report_.get());
  if (status_) return;
  status_ = information.si_code == CLD_EXITED ? information.si_status
                                              : kSignalStatus + information.si_status;
}

std::optional<int> ContainedProgram::wait(milliseconds timeout) {
  // A container that was killed from outside leaves a shell that nobody waits for.
  const bool ended = shell_.has_ended(timeout) || container_.has_ended(milliseconds(0));
  if (!status_ && ended) end_container();
  return status_;
}

}  // namespace board
