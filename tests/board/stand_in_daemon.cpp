// Stands in for the daemon in tests of the board itself: uses what a daemon uses of it, and says
// what it found, until SIGTERM. Each argument is a step:
//   print-property NAME, set-property NAME VALUE, write FILE TEXT, run PROGRAM [ARGUMENT]... (the
//   rest), gamma (prints an entry), listen PORT, wait, exit STATUS, leave-child
#include <android/log.h>
#include <baseparameter_api.h>
#include <cutils/properties.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string_view>

namespace {

constexpr const char* kTag = "standin";

void log(const char* what, const char* value) {
  __android_log_print(ANDROID_LOG_INFO, kTag, "%s %s", what, value);
}

void print_property(const char* name) {
  char value[PROPERTY_VALUE_MAX];
  property_get(name, value, "(none)");
  log(name, value);
}

void print_gamma() {
  baseparameter_api api;
  auto info = std::make_unique<pq_tuning_info>();
  const int result = api.get_pq_tuning_info(info.get());
  __android_log_print(ANDROID_LOG_INFO, kTag, "gamma result %d entry %d", result,
                      int{info->gamma_tab_r[1023]});
}

void write_file(const char* name, const char* text) {
  const int file = ::open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  const bool written = file >= 0 && ::write(file, text, std::string_view(text).size()) > 0;
  if (file >= 0) ::close(file);
  log(written ? "wrote" : "could not write", name);
}

// As the daemon does: fork, a line of log, execlp of an absolute path.
void run(char** arguments) {
  const pid_t child = ::fork();
  if (child == 0) {
    __android_log_write(ANDROID_LOG_DEBUG, nullptr, "before exec");
    ::execlp(arguments[0], arguments[0], arguments[1], arguments[2], arguments[3], nullptr);
    ::_exit(4);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  __android_log_print(ANDROID_LOG_INFO, kTag, "ran %s: %d", arguments[0], WEXITSTATUS(status));
}

void listen_on(const char* port) {
  const int server = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(std::atoi(port)));
  if (::bind(server, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
      ::listen(server, 1) != 0) {
    log("could not listen on", port);
  }
}

[[noreturn]] void wait_for_term() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  log("waits", "");
  int number = 0;
  sigwait(&signals, &number);
  std::exit(7);
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view step = argv[i];
    if (step == "print-property") print_property(argv[++i]);
    if (step == "gamma") print_gamma();
    if (step == "listen") listen_on(argv[++i]);
    if (step == "wait") wait_for_term();
    if (step == "exit") return std::atoi(argv[i + 1]);
    if (step == "leave-child" && ::fork() == 0) ::pause();
    if (step == "set-property") {
      property_set(argv[i + 1], argv[i + 2]);
      i += 2;
    }
    if (step == "write") {
      write_file(argv[i + 1], argv[i + 2]);
      i += 2;
    }
    if (step == "run") {
      run(argv + i + 1);
      break;
    }
  }
}
