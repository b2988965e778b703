// A simulated board: boots it, runs the daemon on it, and shows what happened.
//
//   board::Board board("tv", {});
//   board.start();
//   board.wait_for_log("...");
//   EXPECT_EQ(0, board.stop(SIGTERM));
//
// One thread drives a board: the daemon ends when the thread that started it does.
#ifndef BOARD_LAUNCH_BOARD_H_
#define BOARD_LAUNCH_BOARD_H_

#include <sys/types.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "description/description.h"
#include "files/file_descriptor.h"
#include "launch/isolation.h"
#include "launch/session.h"
#include "launch/state_folder.h"

namespace board {

inline constexpr uint16_t kDaemonPort = 5543;

struct BoardOptions {
  std::filesystem::path daemon{};        // empty: this build's
  std::vector<std::string> arguments{};  // of the daemon
  // Added to the daemon's environment, which otherwise holds PATH, the board's own settings and the
  // sanitizers' options, and nothing else of the caller's.
  std::map<std::string, std::string> environment{};
  // Kept at the end, and persistent properties, store and documents with it. Empty: a temporary
  // folder, removed at the end.
  std::filesystem::path state{};
  Isolation isolation = Isolation::kAuto;
  bool log_to_terminal = false;  // the caller's standard error instead of the log file
  bool announced = false;        // qxboard finds the board without being told its folder
  // Folders whose libraries stand in for the board's of the same name.
  std::vector<std::filesystem::path> libraries{};
  // Fixed waits take this part of their time: 50 makes the 2 seconds of a redraw 40 ms. At least 1.
  unsigned hurry = 1;
  std::vector<std::filesystem::path> companions{};  // more programs that run beside the daemon
};

class Board {
 public:
  using Milliseconds = std::chrono::milliseconds;
  static constexpr Milliseconds kDefaultTimeout{20'000};

  // Powers the board on; the daemon does not run yet, so that a test can put files and properties
  // in place first. Throws std::runtime_error, as every call below, when that cannot be done.
  Board(Description description, BoardOptions options);
  Board(const std::string& name_or_file, BoardOptions options);
  // Ends the daemon at once if it still runs.
  ~Board();

  // Starts the daemon and the board's companion programs.
  void start();

  // Sends the signal and returns the daemon's exit status, 128 + N if signal N ended it. A daemon
  // that does not end within the timeout is killed, and std::runtime_error is thrown.
  int stop(int signal = SIGTERM, Milliseconds timeout = kDefaultTimeout);

  // stop(), then start() on the board as it is.
  int restart(int signal = SIGTERM);

  // The exit status as stop() returns it, nothing when the daemon still runs after the timeout.
  std::optional<int> wait(Milliseconds timeout);

  void signal(int number);
  [[nodiscard]] bool running() const { return session_ != nullptr; }
  [[nodiscard]] pid_t daemon_pid() const;  // as seen from here, not from inside the board
  [[nodiscard]] Isolation isolation() const { return isolation_; }

  // Waits until somebody listens on the TCP port of the network that board and caller share.
  // Does not connect. False when nobody does within the timeout, or the daemon ended.
  bool wait_until_listening(uint16_t port, Milliseconds timeout = kDefaultTimeout);

  // Properties: nothing when never set.
  [[nodiscard]] std::optional<std::string> property(std::string_view name) const;
  void set_property(std::string_view name, std::string_view value) const;

  // A board's path ("/data/vendor/qxalgo/pq_config.json") on this machine; the file need not exist.
  [[nodiscard]] std::filesystem::path file(const std::filesystem::path& path_on_board) const;
  [[nodiscard]] std::string read(
      const std::filesystem::path& path_on_board) const;  // throws when it cannot
  // Makes the folders above it too.
  void write(const std::filesystem::path& path_on_board, std::string_view content) const;

  // The output of the daemon and its companions since the board was switched on.
  [[nodiscard]] std::string log() const;
  // Waits until the text is in what was printed since the last start(). False after the timeout.
  bool wait_for_log(std::string_view text, Milliseconds timeout = kDefaultTimeout);

  // The programs that the daemon started, in order, without the time: "service call SurfaceFlinger
  // 1006".
  [[nodiscard]] std::vector<std::string> calls() const;

  [[nodiscard]] const Description& description() const { return description_; }
  [[nodiscard]] const std::filesystem::path& state() const { return state_.path(); }

 private:
  [[nodiscard]] std::vector<std::filesystem::path> companions() const;
  [[nodiscard]] Container container() const;
  [[nodiscard]] std::vector<std::string> daemon_environment() const;  // NAME=VALUE

  Description description_;
  BoardOptions options_;
  Isolation isolation_;
  StateFolder state_;
  size_t log_at_start_ = 0;
  FileDescriptor log_file_;
  std::unique_ptr<Session> session_;
};

}  // namespace board

#endif  // BOARD_LAUNCH_BOARD_H_
