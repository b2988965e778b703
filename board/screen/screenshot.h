// A picture of what a running board shows.
#ifndef BOARD_SCREEN_SCREENSHOT_H_
#define BOARD_SCREEN_SCREENSHOT_H_

#include <filesystem>

#include "description/description.h"
#include "screen/picture.h"

namespace board::screen {

// The screen's resolution: that of the dumps in the board's description.
Size screen_size(const Description& description);

// Writes what the board shows at this moment as a PNG file. board_folder is the running
// board's state folder as the caller sees it. Throws std::runtime_error with a message for the
// user.
void write_screenshot(const std::filesystem::path& board_folder, const std::filesystem::path& file);

}  // namespace board::screen

#endif  // BOARD_SCREEN_SCREENSHOT_H_
