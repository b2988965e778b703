// All that decides what the screen makes of its picture.
#ifndef BOARD_SCREEN_SCREEN_STATE_H_
#define BOARD_SCREEN_SCREEN_STATE_H_

#include <cstdint>
#include <optional>

#include "colour/lut3d.h"
#include "colour/picture_settings.h"

namespace board::screen {

// 0..255 a channel.
struct PatternColour {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  friend bool operator==(const PatternColour&, const PatternColour&) = default;
};

// As constructed: a display that nobody has set anything on, showing the test picture.
struct ScreenState {
  PictureControls controls;
  std::optional<Lut3d> lut;  // none: the stage is passed by
  GammaTable gamma;
  std::optional<PatternColour> pattern;  // covers the test picture
};

}  // namespace board::screen

#endif  // BOARD_SCREEN_SCREEN_STATE_H_
