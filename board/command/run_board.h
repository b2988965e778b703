// qxboard run: a board in the foreground.
#ifndef BOARD_COMMAND_RUN_BOARD_H_
#define BOARD_COMMAND_RUN_BOARD_H_

#include <string>

#include "launch/board.h"

namespace board {

// Powers the board on, runs the daemon with its log on standard error, and hands the signals that
// end a program on to it until it ends. Returns the daemon's exit status. Throws
// std::runtime_error when the board cannot start, or another one has its port.
int run_in_foreground(const std::string& name_or_file, const BoardOptions& options);

}  // namespace board

#endif  // BOARD_COMMAND_RUN_BOARD_H_
