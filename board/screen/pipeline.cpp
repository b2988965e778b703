#include "screen/pipeline.h"

#include <algorithm>

#include "screen/gamma_stage.h"
#include "screen/lut_stage.h"
#include "screen/row_bands.h"
#include "screen/test_picture.h"

namespace board::screen {
namespace {

RgbFloat to_float(const Rgb16& colour) {
  constexpr float kUnit = 1.0F / kFullScale;
  return {static_cast<float>(colour.red) * kUnit, static_cast<float>(colour.green) * kUnit,
          static_cast<float>(colour.blue) * kUnit};
}

// Each stage's output is clipped to 0..1, as between the stages of the hardware.
float apply_channel(const AffineChannel& channel, const RgbFloat& input) {
  const float value = channel.weights[0] * input.red + channel.weights[1] * input.green +
                      channel.weights[2] * input.blue + channel.offset;
  return std::clamp(value, 0.0F, 1.0F);
}

// Rounds by adding a half: exact for these values, and several times faster than std::lround.
size_t gamma_entry(float channel) {
  const float level = std::min(channel, 1.0F) * kFullScale + 0.5F;
  return static_cast<size_t>(level);
}

}  // namespace

Pipeline::Pipeline(const ScreenState& state)
    : lut_(state.lut),
      gamma_{spread_gamma_table(state.gamma.red), spread_gamma_table(state.gamma.green),
             spread_gamma_table(state.gamma.blue)} {
  if (state.controls != PictureControls{}) controls_ = picture_controls_matrix(state.controls);
}

Rgb16 Pipeline::apply(const Rgb16& input) const {
  RgbFloat colour = to_float(input);
  if (controls_) {
    colour = {apply_channel((*controls_)[0], colour), apply_channel((*controls_)[1], colour),
              apply_channel((*controls_)[2], colour)};
  }
  if (lut_) colour = look_up(*lut_, colour);
  return {gamma_[0][gamma_entry(colour.red)], gamma_[1][gamma_entry(colour.green)],
          gamma_[2][gamma_entry(colour.blue)]};
}

Picture Pipeline::apply(const Picture& input) const {
  Picture output(input.size);
  for_each_row(input.size.height, [&](uint32_t y) {
    const auto from = input.row(y);
    std::transform(from.begin(), from.end(), output.row(y).begin(),
                   [this](const Rgb16& pixel) { return apply(pixel); });
  });
  return output;
}

Picture screen_input(const ScreenState& state, Size size) {
  return state.pattern ? draw_pattern(size, *state.pattern) : draw_test_picture(size);
}

}  // namespace board::screen
