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

  // Powers the board on and starts the daemon; both documents are there then. Its dumps are small
  // and its log keeps to errors, so that the figures are the daemon's and not the disk's.
  // The thread that does so has to outlive the board.
  explicit LoadedBoard(const Options& options);
  LoadedBoard() : LoadedBoard(Options{}) {}

  // Starts the daemon (again) and waits until it listens.
  void start();

  // Ends the daemon with SIGTERM. Throws unless it exits with 0, which it does not when a sanitizer
  // has found anything.
  void stop();

  board::Board& board() { return board_; }

  ProcessFigures figures() const { return read_process(board_.daemon_pid()); }

  // The figures as soon as there are at most so many threads, or after ten seconds: a client's
  // thread ends a moment after its client, and is joined within a second.
  ProcessFigures settled(size_t threads) const;
  // And once the daemon has given back what its clients needed: a second after the last one left.
  ProcessFigures at_rest(size_t threads) const;

  // The engine writes a file of 130 KB for each table it computes.
  void remove_lut_files();

 private:
  board::Board board_;
};

}  // namespace load

#endif  // BENCH_LOAD_LOADED_BOARD_H_
