// The commands of qxboard that look at a board which runs, or at the state folder that one left.
//
// state: the board's state folder; empty: the only board that runs. Results go to standard output.
// All throw std::runtime_error that says what to do when there is no such board.
#ifndef BOARD_COMMAND_INSPECT_BOARD_H_
#define BOARD_COMMAND_INSPECT_BOARD_H_

#include <string>

namespace board {

// name: empty for all properties.
void print_properties(const std::string& state, const std::string& name);
void set_property(const std::string& state, const std::string& name, const std::string& value);
void print_calls(const std::string& state);

// Prints the settings of the display device, on screen or not.
void print_display(const std::string& state);

// Saves the current picture of the screen as a PNG.
void save_screenshot(const std::string& state, const std::string& file);

// The boards that can be run, by name.
void print_boards();

}  // namespace board

#endif  // BOARD_COMMAND_INSPECT_BOARD_H_
