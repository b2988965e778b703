// Colours through a 3D table.
#ifndef BOARD_SCREEN_LUT_STAGE_H_
#define BOARD_SCREEN_LUT_STAGE_H_

#include "colour/lut3d.h"

namespace board::screen {

// 0..1 a channel.
struct RgbFloat {
  float red = 0;
  float green = 0;
  float blue = 0;
};

// Tetrahedral interpolation: of the cell's eight corners the four count whose tetrahedron holds the
// colour, so that greys between two grey points stay on the line between them.
// input: each channel from 0 to 1.
RgbFloat look_up(const Lut3d& lut, const RgbFloat& input);

}  // namespace board::screen

#endif  // BOARD_SCREEN_LUT_STAGE_H_
