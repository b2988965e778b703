#include "interrupt.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <limits>

namespace {

using std::chrono::milliseconds;

bool interrupted = false;

// Switches the terminal to single keys without echo.
class KeyInput {
 public:
  // A background process does not own the keys, and reading them would stop it.
  KeyInput()
      : is_terminal_(tcgetpgrp(STDIN_FILENO) == getpgrp() &&
                     tcgetattr(STDIN_FILENO, &previous_) == 0) {
    if (!is_terminal_) return;
    termios keys = previous_;
    keys.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    (void)tcsetattr(STDIN_FILENO, TCSANOW, &keys);
  }
  ~KeyInput() {
    if (is_terminal_) (void)tcsetattr(STDIN_FILENO, TCSANOW, &previous_);
  }
  KeyInput(const KeyInput&) = delete;
  KeyInput& operator=(const KeyInput&) = delete;

  // poll ignores a negative descriptor.
  [[nodiscard]] int descriptor() const { return is_terminal_ ? STDIN_FILENO : -1; }

 private:
  termios previous_{};
  bool is_terminal_;
};

class SignalInput {
 public:
  explicit SignalInput(const sigset_t& signals)
      : descriptor_(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK)) {}
  ~SignalInput() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  SignalInput(const SignalInput&) = delete;
  SignalInput& operator=(const SignalInput&) = delete;

  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

// For poll: -1 waits without limit.
int milliseconds_until(std::optional<std::chrono::steady_clock::time_point> end) {
  if (!end) return -1;
  const auto left = std::chrono::ceil<milliseconds>(*end - std::chrono::steady_clock::now());
  constexpr milliseconds kMaxWait(std::numeric_limits<int>::max());
  return static_cast<int>(std::clamp(left, milliseconds(0), kMaxWait).count());
}

}  // namespace

InterruptGuard::InterruptGuard() {
  sigemptyset(&ending_);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    sigaddset(&ending_, signal);
  sigset_t blocked = ending_;
  sigaddset(&blocked, SIGPIPE);
  (void)pthread_sigmask(SIG_BLOCK, &blocked, &previous_);
}

// Takes pending signals here, so that the program can exit in its own way.
InterruptGuard::~InterruptGuard() {
  (void)is_interrupted();
  (void)pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
}

bool InterruptGuard::is_interrupted() const {
  const timespec at_once{};
  while (sigtimedwait(&ending_, nullptr, &at_once) > 0)
    interrupted = true;
  return interrupted;
}

bool InterruptGuard::was_interrupted() {
  return interrupted;
}

InterruptGuard::End InterruptGuard::wait(std::optional<milliseconds> time, char* key) {
  std::optional<std::chrono::steady_clock::time_point> end;
  if (time) end = std::chrono::steady_clock::now() + *time;
  const KeyInput keys;
  const SignalInput signals(ending_);
  std::array<pollfd, 2> inputs = {{{.fd = signals.descriptor(), .events = POLLIN, .revents = 0},
                                   {.fd = keys.descriptor(), .events = POLLIN, .revents = 0}}};
  while (!is_interrupted()) {
    const int ready = poll(inputs.data(), inputs.size(), milliseconds_until(end));
    if (ready == 0) return End::kTime;
    char pressed = '\0';
    if (ready > 0 && inputs[1].revents != 0) {
      if (read(STDIN_FILENO, &pressed, 1) == 1) {
        if (key != nullptr) *key = pressed;
        return End::kKey;
      }
      inputs[1].fd = -1;  // the terminal is gone
    }
  }
  return End::kInterrupt;
}
