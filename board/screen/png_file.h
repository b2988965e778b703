// Pictures as PNG files.
#ifndef BOARD_SCREEN_PNG_FILE_H_
#define BOARD_SCREEN_PNG_FILE_H_

#include <filesystem>

#include "screen/picture.h"

namespace board::screen {

// 8 bits a channel, RGB. Throws std::runtime_error that names the file and the reason; what stood
// in the file before may then be lost.
void write_png(const Picture& picture, const std::filesystem::path& file);

}  // namespace board::screen

#endif  // BOARD_SCREEN_PNG_FILE_H_
