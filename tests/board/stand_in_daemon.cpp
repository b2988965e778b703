// Stands in for the daemon in tests of the board itself: uses what a daemon uses of it and logs
// what it found. Its arguments are steps, each a word and its operands; it ends with status 0 after
// the last, 7 when it was told to wait.
#include <android/log.h>
#include <baseparameter_api.h>
#include <cutils/properties.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

namespace {

int status = 0;

void log(const std::string& what) {
  __android_log_print(ANDROID_LOG_INFO, "standin", "%s", what.c_str());
}

// print-property NAME
void print_property(char** operand) {
  std::array<char, PROPERTY_VALUE_MAX> value{};
  property_get(operand[0], value.data(), "(none)");
  log(std::string(operand[0]) + " " + value.data());
}

// set-property NAME VALUE
void set_property(char** operand) {
  property_set(operand[0], operand[1]);
}

// print-environment NAME
void print_environment(char** operand) {
  const char* value = std::getenv(operand[0]);
  log(std::string(operand[0]) + " " + (value != nullptr ? value : "(none)"));
}

// gamma: the last entry of the red table
void print_gamma(char**) {
  baseparameter_api api;
  auto info = std::make_unique<pq_tuning_info>();
  const int result = api.get_pq_tuning_info(info.get());
  log("gamma result " + std::to_string(result) + " entry " +
      std::to_string(info->gamma_tab_r[1023]));
}

// write FILE TEXT
void write_file(char** operand) {
  const int file = ::open(operand[0], O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  const std::string_view text = operand[1];
  const bool written = file >= 0 && ::write(file, text.data(), text.size()) > 0;
  log((written ? "wrote " : "could not write ") + std::string(operand[0]));
  if (file >= 0) ::close(file);
}

// read FILE
void read_file(char** operand) {
  std::ifstream file(operand[0]);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  log(file ? "read " + text : "could not read " + std::string(operand[0]));
}

// redraw: as the daemon does, with a line of log between fork and execlp
void redraw(char**) {
  const pid_t child = ::fork();
  if (child == 0) {
    __android_log_write(ANDROID_LOG_DEBUG, nullptr, "before exec");
    ::execlp("/system/bin/service", "service", "call", "SurfaceFlinger", "1006", nullptr);
    ::_exit(4);
  }
  int result = 0;
  ::waitpid(child, &result, 0);
  log("redraw ended with " + std::to_string(WEXITSTATUS(result)));
}

// leave-child FILE: one that ends by itself only after hours, and holds a lock on the file
void leave_child(char** operand) {
  const int file = ::open(operand[0], O_RDWR | O_CREAT, 0644);
  ::flock(file, LOCK_EX);
  if (::fork() == 0) {
    ::setsid();
    for (;;)
      ::pause();
  }
}

// listen PORT
void listen_on(char** operand) {
  const int server = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(std::atoi(operand[0])));
  if (::bind(server, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
      ::listen(server, 1) != 0) {
    log("could not listen");
  }
}

// wait: for SIGTERM
void wait_for_term(char**) {
  log("waits");
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  int number = 0;
  sigwait(&signals, &number);
  status = 7;
}

// exit STATUS
void exit_with(char** operand) {
  status = std::atoi(operand[0]);
}

struct Step {
  std::string_view name;
  void (*take)(char** operand);
  int operands;
};
constexpr Step kSteps[] = {
    {"print-property", print_property, 1},
    {"set-property", set_property, 2},
    {"print-environment", print_environment, 1},
    {"gamma", print_gamma, 0},
    {"write", write_file, 2},
    {"read", read_file, 1},
    {"redraw", redraw, 0},
    {"leave-child", leave_child, 1},
    {"listen", listen_on, 1},
    {"wait", wait_for_term, 0},
    {"exit", exit_with, 1},
};

}  // namespace

int main(int argc, char** argv) {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  for (int i = 1; i < argc;) {
    const std::string_view name = argv[i++];
    for (const auto& step : kSteps) {
      if (step.name != name) continue;
      step.take(argv + i);
      i += step.operands;
    }
  }
  return status;
}
