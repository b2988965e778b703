// Brightness, contrast, saturation and hue as a display applies them.
#ifndef BOARD_SCREEN_PICTURE_CONTROLS_H_
#define BOARD_SCREEN_PICTURE_CONTROLS_H_

#include <array>

#include "screen/screen_state.h"

namespace board::screen {

// All four controls are affine, so they fold into one step for each output channel:
//   channel = weights[0] * red + weights[1] * green + weights[2] * blue + offset
// with channels from 0 to 1, not clipped.
struct AffineChannel {
  std::array<float, 3> weights;
  float offset;
};
using AffineColour = std::array<AffineChannel, 3>;  // red, green, blue

// In BT.709 YCbCr, with b, c, s, h in percent:
//   chroma is turned by (h - 50)/50 * 30 degrees, from +Cb towards +Cr, and scaled by s/50;
//   then luma and chroma are scaled by c/50 (about mid-grey) and (b - 50)/100 is added to luma.
// So each control's neutral 50 changes nothing, contrast 0 is flat grey, saturation 0 is black and
// white. Values beyond 0..100 count as the nearer end.
AffineColour picture_controls_matrix(const PictureControls& controls);

}  // namespace board::screen

#endif  // BOARD_SCREEN_PICTURE_CONTROLS_H_
