#include "launch/session.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>

namespace board {
namespace {

// The descriptor that board_init finds its end of the status socket at.
constexpr int kStatusDescriptor = 3;

constexpr std::chrono::seconds kStartTimeout{20};
constexpr std::chrono::seconds kEndTimeout{5};

struct Received {
  StatusMessage message;
  pid_t sender;
};

std::vector<char*> pointers(const std::vector<std::string>& words) {
  std::vector<char*> result;
  result.reserve(words.size() + 1);
  for (const auto& word : words)
    result.push_back(const_cast<char*>(word.c_str()));
  result.push_back(nullptr);
  return result;
}

bool has_ended(pid_t process) {
  siginfo_t information{};
  const auto id = static_cast<id_t>(process);
  return process > 0 && ::waitid(P_PID, id, &information, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         information.si_pid == process;
}

bool readable(int descriptor, std::chrono::milliseconds timeout) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        end - std::chrono::steady_clock::now());
    pollfd waiting{descriptor, POLLIN, 0};
    const int result = ::poll(&waiting, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0);
    if (result >= 0 || errno != EINTR) return result > 0;
  }
}

// Nothing when the other end is gone.
std::optional<Received> receive(int socket) {
  Received received{};
  iovec part{&received.message, sizeof(received.message)};
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(ucred))];
  msghdr header{};
  header.msg_iov = &part;
  header.msg_iovlen = 1;
  header.msg_control = control;
  header.msg_controllen = sizeof(control);
  ssize_t size = 0;
  do {
    size = ::recvmsg(socket, &header, 0);
  } while (size < 0 && errno == EINTR);
  if (size != sizeof(received.message)) return std::nullopt;
  for (cmsghdr* item = CMSG_FIRSTHDR(&header); item != nullptr; item = CMSG_NXTHDR(&header, item)) {
    if (item->cmsg_level == SOL_SOCKET && item->cmsg_type == SCM_CREDENTIALS) {
      ucred credentials{};
      std::memcpy(&credentials, CMSG_DATA(item), sizeof(credentials));
      received.sender = credentials.pid;
    }
  }
  return received;
}

// With its own session, so that a Ctrl-C on the terminal reaches the launcher alone, which then
// ends the daemon in order.
pid_t spawn(const std::vector<std::string>& command, const std::vector<std::string>& environment,
            int output, int status) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO);
  posix_spawn_file_actions_adddup2(&actions, status, kStatusDescriptor);
  posix_spawn_file_actions_addclosefrom_np(&actions, kStatusDescriptor + 1);

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
                                 pointers(command).data(), pointers(environment).data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    throw std::runtime_error("cannot start " + command[0] + ": " + std::strerror(error));
  }
  return process;
}

}  // namespace

Session::Session(const Options& options) {
  int sockets[2];
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets) != 0) {
    throw std::runtime_error(std::string("cannot make a socket pair: ") + std::strerror(errno));
  }
  status_socket_ = sockets[0];
  const int on = 1;
  ::setsockopt(status_socket_, SOL_SOCKET, SO_PASSCRED, &on, sizeof(on));

  auto command = options.command;
  command.insert(command.end(), {"--status", std::to_string(kStatusDescriptor)});
  command.insert(command.end(), options.arguments.begin(), options.arguments.end());
  try {
    first_process_ = spawn(command, options.environment, options.output, sockets[1]);
    ::close(sockets[1]);
  } catch (...) {
    ::close(sockets[0]);
    ::close(sockets[1]);
    throw;
  }
  try {
    init_ = await(StatusKind::kUp);
    daemon_ = await(StatusKind::kStarted);
  } catch (...) {
    kill_all();
    ::close(status_socket_);
    throw;
  }
}

Session::~Session() {
  if (!ended_) kill_all();
  ::close(status_socket_);
}

// Returns the sender's process id.
pid_t Session::await(StatusKind kind) {
  std::optional<Received> received;
  if (readable(status_socket_, kStartTimeout)) received = receive(status_socket_);
  if (!received || received->message.kind != kind) {
    throw std::runtime_error("the board did not start; its log says why");
  }
  return received->sender;
}

// In order first: board_init knows what it started. If it does not answer it is killed itself;
// where it has a process namespace, the kernel ends all others before bubblewrap, which waits for
// it, can end.
void Session::kill_all() {
  if (init_ > 0) ::kill(init_, kEndNow);
  while (init_ > 0 && readable(status_socket_, kEndTimeout)) {
    const auto received = receive(status_socket_);
    if (!received || received->message.kind == StatusKind::kEnded) break;
  }
  ::kill(init_ > 0 ? init_ : first_process_, SIGKILL);
  reap();
}

void Session::reap() {
  if (first_process_ > 0) ::waitpid(first_process_, nullptr, 0);
  first_process_ = -1;
}

void Session::signal(int number) {
  if (!wait(std::chrono::milliseconds(0))) ::kill(daemon_, number);
}

std::optional<int> Session::wait(std::chrono::milliseconds timeout) {
  // bubblewrap, when it is killed, is gone a moment before the processes that go with it; nothing
  // would tell the caller to ask again.
  if (has_ended(first_process_))
    timeout = std::max<std::chrono::milliseconds>(timeout, kEndTimeout);
  if (ended_ || !readable(status_socket_, timeout)) return ended_;
  const auto received = receive(status_socket_);
  // Without a last word, board_init itself was killed, and the daemon with it.
  const int status = received ? received->message.value : SIGKILL;
  ended_ = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  reap();
  return ended_;
}

}  // namespace board
