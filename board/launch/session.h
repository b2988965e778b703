// One run of the daemon with its companions: the processes below board_init.
#ifndef BOARD_LAUNCH_SESSION_H_
#define BOARD_LAUNCH_SESSION_H_

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "init/status.h"

namespace board {

class Session {
 public:
  struct Options {
    std::vector<std::string> command;      // ends with board_init's own name
    std::vector<std::string> arguments;    // of board_init, without its status option
    std::vector<std::string> environment;  // NAME=VALUE, all of it
    int output;  // becomes standard output and error; the caller's to close
  };

  // Returns when the daemon's process is about to become the daemon. Throws std::runtime_error.
  // The processes die with the thread that starts them: it has to outlive the session.
  explicit Session(const Options& options);
  // Ends everything at once (SIGKILL) if it still runs.
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // As this machine sees it. Valid as long as the session runs.
  pid_t daemon_pid() const { return daemon_; }

  // Does nothing when the daemon has ended.
  void signal(int number);

  // The daemon's exit status, 128 + N when signal N ended it; nothing when it still runs after
  // `timeout`. When it has ended, so has everything that the board started.
  std::optional<int> wait(std::chrono::milliseconds timeout);

 private:
  pid_t await(StatusKind kind);
  void kill_all();
  void reap();

  int status_socket_ = -1;
  pid_t first_process_ = -1;
  pid_t init_ = -1;
  pid_t daemon_ = -1;
  std::optional<int> ended_;
};

}  // namespace board

#endif  // BOARD_LAUNCH_SESSION_H_
