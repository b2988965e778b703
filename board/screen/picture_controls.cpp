#include "screen/picture_controls.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "colour/rgb.h"

namespace board::screen {
namespace {

constexpr double kNeutral = 50;
constexpr double kMaxTurn = 30 * std::numbers::pi / 180;
constexpr double kMidGrey = 0.5;

double percent(int value) {
  return std::clamp(value, 0, 100);
}

Rgb apply(const PictureControls& controls, const Rgb& input) {
  const double turn = (percent(controls.hue) - kNeutral) / kNeutral * kMaxTurn;
  const double contrast = percent(controls.contrast) / kNeutral;
  const double chroma = percent(controls.saturation) / kNeutral * contrast;
  const double brightness = (percent(controls.brightness) - kNeutral) / 100;
  const YCbCr colour = to_ycbcr(input);
  return to_rgb({(colour.y - kMidGrey) * contrast + kMidGrey + brightness,
                 chroma * (colour.cb * std::cos(turn) - colour.cr * std::sin(turn)),
                 chroma * (colour.cb * std::sin(turn) + colour.cr * std::cos(turn))});
}

AffineChannel channel(double Rgb::*member, const Rgb& black, const std::array<Rgb, 3>& primaries) {
  AffineChannel result{};
  result.offset = static_cast<float>(black.*member);
  for (size_t i = 0; i < primaries.size(); ++i) {
    result.weights[i] = static_cast<float>(primaries[i].*member - black.*member);
  }
  return result;
}

}  // namespace

// Its effect on black and the three primaries defines an affine step.
AffineColour picture_controls_matrix(const PictureControls& controls) {
  const Rgb black = apply(controls, {0, 0, 0});
  const std::array<Rgb, 3> primaries = {apply(controls, {1, 0, 0}), apply(controls, {0, 1, 0}),
                                        apply(controls, {0, 0, 1})};
  return {channel(&Rgb::red, black, primaries), channel(&Rgb::green, black, primaries),
          channel(&Rgb::blue, black, primaries)};
}

}  // namespace board::screen
