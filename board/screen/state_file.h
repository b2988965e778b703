// What is on screen, as a file: the display service writes it at each change, and whoever wants a
// screenshot or to look at the values reads it, also from outside of the board's private root.
//
// JSON: "controls" with the four percentages, "gamma" with "red", "green", "blue" lists, and where
// there are such, "lut" (a flat list, laid out as in colour/lut3d.h) and "pattern" (three numbers).
#ifndef BOARD_SCREEN_STATE_FILE_H_
#define BOARD_SCREEN_STATE_FILE_H_

#include <filesystem>

#include "screen/display_state.h"

namespace board::screen {

// Where a running board keeps it.
std::filesystem::path state_file(const std::filesystem::path& board_folder);

void write_state(const DisplayState& state, const std::filesystem::path& file);

// Throws std::runtime_error when there is no such file or it holds no state.
DisplayState read_state(const std::filesystem::path& file);

}  // namespace board::screen

#endif  // BOARD_SCREEN_STATE_FILE_H_
