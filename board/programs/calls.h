// The record of what was asked of the board's programs: one line a call in the file `calls` of the
// board's folder: time, program, arguments.
#ifndef BOARD_PROGRAMS_CALLS_H_
#define BOARD_PROGRAMS_CALLS_H_

#include <span>
#include <string>
#include <string_view>

namespace board {

// "am start -n ..."; an argument that is empty or holds white space or a quote stands in quotes.
std::string command_line(std::string_view program, std::span<const char* const> arguments);

// Appends the call to the record; complains on standard error when that fails.
void record_call(std::string_view program, std::span<const char* const> arguments);

}  // namespace board

#endif  // BOARD_PROGRAMS_CALLS_H_
