#include "common/pq_tuning_utils.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>

#include <android/log.h>

#include "base/log.h"
#include "base/wait.h"
#include "documents/names.h"

namespace {

constexpr int kExecFailedStatus = 4;
constexpr std::chrono::seconds kProgramTime{2};

// Reaps every child that has ended. Runs on the main thread, at any point of it.
void child_handler(int /*signal*/) {
  const int saved_errno = errno;
  int status = 0;
  while (waitpid(-1, &status, WNOHANG) > 0) {
  }
  errno = saved_errno;
}

// Writes a line that was formatted before the fork. Another thread may have held a lock of malloc
// or stdio at the fork, and in the child that lock is never released.
void write_in_child(const pq::LogText& text) {
  if (text[0] != '\0') __android_log_print(ANDROID_LOG_DEBUG, nullptr, "%s", text.data());
}

// Runs a program in a child and waits for its effect. `exec` replaces the child with the program.
template <typename Exec>
int run_program(Exec exec) {
  std::signal(SIGCHLD, child_handler);
  // "execl am" for every program: both texts are part of the interface.
  const pq::LogText before = pq::log_debug_untagged().text("before execl am");
  const pq::LogText after = pq::log_debug_untagged().text("after execl am");

  const pid_t child = fork();
  if (child == 0) {
    write_in_child(before);
    // A SIGPIPE from writing to a dead log may be pending; setting SIG_IGN discards it.
    std::signal(SIGPIPE, std::signal(SIGPIPE, SIG_IGN));
    // Our threads block signals, and the program would inherit the mask. It is cleared last: until
    // exec, a signal would run the daemon's handlers in the child.
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    exec();
    write_in_child(after);
    _exit(kExecFailedStatus);
  }
  if (child < 0) return child;
  pq::wait_whole(kProgramTime);
  pq::log_debug_untagged()("after fork am %d", child);
  return child;
}

// A colour component in decimal.
class ComponentText {
 public:
  explicit ComponentText(int value) {
    *std::to_chars(text_, text_ + sizeof(text_) - 1, value).ptr = '\0';
  }
  [[nodiscard]] const char* c_str() const { return text_; }

 private:
  char text_[12] = {};
};

}  // namespace

int PQTuningUtils::updateUI() {
  return run_program(
      [] { execlp(pq::kServiceCaller, "service", "call", "SurfaceFlinger", "1006", nullptr); });
}

int PQTuningUtils::showPattern(int red, int green, int blue) {
  const ComponentText red_text(red);
  const ComponentText green_text(green);
  const ComponentText blue_text(blue);
  return run_program([&] {
    execlp(pq::kActivityManager, "am", "start", "-n",
           "com.qx.patterntool/com.qx.patterntool.Display", "--ei", "red", red_text.c_str(), "--ei",
           "green", green_text.c_str(), "--ei", "blue", blue_text.c_str(), nullptr);
  });
}

int PQTuningUtils::closePattern() {
  return run_program(
      [] { execlp(pq::kActivityManager, "am", "force-stop", "com.qx.patterntool", nullptr); });
}
