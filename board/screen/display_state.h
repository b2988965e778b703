// All that decides what the screen makes of its picture.
#ifndef BOARD_SCREEN_DISPLAY_STATE_H_
#define BOARD_SCREEN_DISPLAY_STATE_H_

#include <cstdint>
#include <optional>
#include <vector>

#include "colour/lut3d.h"
#include "colour/rgb.h"

namespace board::screen {

// In percent, 0..100, as the connector's properties have them; 50 is neutral.
struct PictureControls {
  int brightness = 50;
  int contrast = 50;
  int saturation = 50;
  int hue = 50;
  friend bool operator==(const PictureControls&, const PictureControls&) = default;
};

// The CRTC's table: entries spread evenly over the input range, 0..65535 each. The three channels
// have one length; a table of fewer than two entries changes nothing.
struct GammaTable {
  std::vector<uint16_t> red;
  std::vector<uint16_t> green;
  std::vector<uint16_t> blue;
  friend bool operator==(const GammaTable&, const GammaTable&) = default;
};

// 0..255 a channel.
struct PatternColour {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  friend bool operator==(const PatternColour&, const PatternColour&) = default;
};

// As constructed: a display that nobody has set anything on, showing the test picture.
struct DisplayState {
  PictureControls controls;
  std::optional<Lut3d> lut;  // none: the stage is passed by
  GammaTable gamma;
  std::optional<PatternColour> pattern;  // covers the test picture
};

}  // namespace board::screen

#endif  // BOARD_SCREEN_DISPLAY_STATE_H_
