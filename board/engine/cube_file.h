// Colour tables as .cube text files.
#ifndef BOARD_ENGINE_CUBE_FILE_H_
#define BOARD_ENGINE_CUBE_FILE_H_

#include <string>

#include "colour/lut3d.h"

namespace board::engine {

// The whole file: TITLE, LUT_3D_SIZE 17, then 4,913 rows of red, green and blue from 0 to 1 with
// six decimals, red varying fastest (Adobe's Cube LUT format 1.0). The same bytes in every locale.
std::string to_cube_text(const Lut3d& lut);

}  // namespace board::engine

#endif  // BOARD_ENGINE_CUBE_FILE_H_
