// One run of the daemon with its companion programs.
#ifndef BOARD_LAUNCH_SESSION_H_
#define BOARD_LAUNCH_SESSION_H_

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "launch/contained_program.h"
#include "launch/isolation.h"

namespace board {

class Session {
 public:
  struct Options {
    Container container;
    std::vector<std::string> daemon;  // the program's path and its arguments
    std::vector<std::filesystem::path> companions;
    std::vector<std::string> environment;  // NAME=VALUE, all of it
    int output;  // becomes standard output and error; the caller keeps it open as long as this
                 // lives
  };

  // Returns when the daemon's process is about to become the daemon. Throws std::runtime_error.
  // The processes end with the thread that starts them: it has to outlive the session.
  explicit Session(const Options& options);

  // As this machine sees it. Valid as long as the session runs.
  [[nodiscard]] pid_t daemon_pid() const { return daemon_->id(); }

  // Does nothing when the daemon has ended.
  void signal(int number) const { daemon_->signal(number); }

  // The daemon's exit status, 128 + N when signal N ended it; nothing when it still runs after
  // `timeout`. When it has ended, so has everything that the board started.
  // Companions that ended before the daemon are reported on the output.
  std::optional<int> wait(std::chrono::milliseconds timeout);

 private:
  struct Companion {
    Companion(const Options& options, const std::filesystem::path& file);
    std::string path;
    ContainedProgram program;
  };

  void report_lost_companions();
  void end_companions();

  int output_;
  std::list<Companion> companions_;
  std::optional<ContainedProgram> daemon_;
};

}  // namespace board

#endif  // BOARD_LAUNCH_SESSION_H_
