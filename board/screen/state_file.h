// The state of the screen as a file. The display service writes it at each change; screenshots and
// tests read it, also from outside the board's private root.
//
// The file is for one machine and one build: a record in native byte order, then the gamma table's
// red, green and blue entries.
#ifndef BOARD_SCREEN_STATE_FILE_H_
#define BOARD_SCREEN_STATE_FILE_H_

#include <filesystem>

#include "screen/screen_state.h"

namespace board::screen {

// Where a running board keeps it.
std::filesystem::path state_file(const std::filesystem::path& board_folder);

// Throws std::runtime_error; the file then is as it was.
void write_state(const ScreenState& state, const std::filesystem::path& file);

// Throws std::runtime_error when there is no such file or it holds no state.
ScreenState read_state(const std::filesystem::path& file);

}  // namespace board::screen

#endif  // BOARD_SCREEN_STATE_FILE_H_
