// A simulated board with the daemon on it, for one run of load.
#ifndef BENCH_LOAD_LOADED_BOARD_H_
#define BENCH_LOAD_LOADED_BOARD_H_

#include <string>

#include "launch/board.h"
#include "load/process_figures.h"

namespace load {

inline constexpr char kPqDocument[] = "/data/vendor/qxalgo/pq_config.json";
inline constexpr char kAipqDocument[] = "/data/vendor/qxalgo/aipq_config.json";

class LoadedBoard {
 public:
  struct Options {
    unsigned hurry = 50;        // see BoardOptions::hurry
    std::string shell_setup{};  // run before the daemon, in its process: "ulimit -n 64"
  };

  // Powers the board on and starts the daemon, with both documents in place. Dumps are small and
  // the log is limited to errors, so that the figures show the daemon and not the disk.
  // The calling thread must outlive the board.
  explicit LoadedBoard(const Options& options);
  LoadedBoard() : LoadedBoard(Options{}) {}

  // Starts the daemon (again) and waits until it listens.
  void start();

  // Ends the daemon with SIGTERM. Throws unless it exits with 0; a sanitizer's report changes the
  // status, too.
  void stop();

  board::Board& board() { return board_; }

  [[nodiscard]] ProcessFigures figures() const { return read_process(board_.daemon_pid()); }

  // The figures once there are at most `threads` threads, or after ten seconds: a client's thread
  // ends a moment after its client, and is joined within a second.
  [[nodiscard]] ProcessFigures settled(size_t threads) const;
  // The same, once the daemon has returned its clients' memory, a second after the last one left.
  [[nodiscard]] ProcessFigures at_rest(size_t threads) const;

  // The engine writes a file of 130 KB for each table it computes.
  void remove_lut_files();

 private:
  board::Board board_;
};

}  // namespace load

#endif  // BENCH_LOAD_LOADED_BOARD_H_
