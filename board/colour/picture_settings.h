// The settings of a display device: programs make them, the screen shows them.
#ifndef BOARD_COLOUR_PICTURE_SETTINGS_H_
#define BOARD_COLOUR_PICTURE_SETTINGS_H_

#include <cstdint>
#include <vector>

namespace board {

// In percent, 0..100, as the connector's properties have them; 50 is neutral.
struct PictureControls {
  int brightness = 50;
  int contrast = 50;
  int saturation = 50;
  int hue = 50;
  friend bool operator==(const PictureControls&, const PictureControls&) = default;
};

// The CRTC's table: output values 0..65535 for evenly spaced inputs, black first. The three are of
// one size; fewer than two entries mean that output = input.
struct GammaTable {
  std::vector<uint16_t> red, green, blue;
  friend bool operator==(const GammaTable&, const GammaTable&) = default;
};

}  // namespace board

#endif  // BOARD_COLOUR_PICTURE_SETTINGS_H_
