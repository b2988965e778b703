// The display's picture stages, in the order of the hardware that is simulated:
// picture controls, 3D table, gamma table.
#ifndef BOARD_SCREEN_PIPELINE_H_
#define BOARD_SCREEN_PIPELINE_H_

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "screen/picture.h"
#include "screen/picture_controls.h"
#include "screen/screen_state.h"

namespace board::screen {

// The stages for one state, prepared once and then applied to any number of pixels.
class Pipeline {
 public:
  explicit Pipeline(const ScreenState& state);

  [[nodiscard]] Rgb16 apply(const Rgb16& input) const;
  [[nodiscard]] Picture apply(const Picture& input) const;

 private:
  std::optional<AffineColour> controls_;  // none while all are neutral
  std::optional<Lut3d> lut_;
  std::array<std::vector<uint16_t>, 3> gamma_;  // red, green, blue; 65,536 entries each
};

// The input of the stages: the full-screen pattern when there is one, else the test picture.
Picture screen_input(const ScreenState& state, Size size);

}  // namespace board::screen

#endif  // BOARD_SCREEN_PIPELINE_H_
