#include "screen/test_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "screen/row_bands.h"

namespace board::screen {
namespace {

// The first pixel is 0 and the last one 1, as a ramp has to reach both ends of its range.
double end_to_end(uint32_t position, uint32_t length) {
  return length > 1 ? static_cast<double>(position) / (length - 1) : 0;
}

constexpr std::array<Rgb, 8> kBars = {
    {{1, 1, 1}, {1, 1, 0}, {0, 1, 1}, {0, 1, 0}, {1, 0, 1}, {1, 0, 0}, {0, 0, 1}, {0, 0, 0}}};

// Typical gamma-coded values of skin in daylight, our own choice.
constexpr std::array<Rgb, 6> kSkinTones = {{{0.96, 0.85, 0.77},
                                            {0.92, 0.75, 0.64},
                                            {0.82, 0.62, 0.49},
                                            {0.66, 0.46, 0.34},
                                            {0.47, 0.31, 0.23},
                                            {0.28, 0.19, 0.15}}};

template <size_t Count>
const Rgb& patch_at(const std::array<Rgb, Count>& patches, uint32_t x, uint32_t width) {
  return patches[std::min(size_t{x} * Count / width, Count - 1)];
}

Rgb scaled(const Rgb& colour, double level) {
  return {colour.red * level, colour.green * level, colour.blue * level};
}

Rgb primary_ramps(uint32_t x, uint32_t width) {
  constexpr std::array<Rgb, 3> kPrimaries = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  const uint32_t third = std::max(width / 3, 1U);
  const uint32_t ramp = std::min(x / third, 2U);
  return scaled(kPrimaries[ramp], std::min(end_to_end(x - ramp * third, third), 1.0));
}

// Every hue along the row; saturation from none at 0 to about the most that mid-grey can have at 1.
Rgb hue_sweep(double hue, double saturation) {
  constexpr double kMaxChroma = 0.3;
  const double angle = hue * 2 * std::numbers::pi;
  const double chroma = saturation * kMaxChroma;
  return to_rgb({0.5, chroma * std::cos(angle), chroma * std::sin(angle)});
}

void draw_row(uint32_t y, Picture& picture) {
  const auto [width, height] = picture.size;
  const auto sixteenth = static_cast<uint32_t>(uint64_t{y} * 16 / height);
  const uint32_t sweep_start = height * 9 / 16;
  uint32_t x = 0;
  for (Rgb16& pixel : picture.row(y)) {
    Rgb colour;
    if (sixteenth < 3) {
      colour = patch_at(kBars, x, width);
    } else if (sixteenth < 5) {
      colour = scaled(patch_at(kBars, x, width), 0.75);
    } else if (sixteenth < 6) {
      colour = scaled({1, 1, 1}, end_to_end(x, width));
    } else if (sixteenth < 7) {
      colour = primary_ramps(x, width);
    } else if (sixteenth < 9) {
      colour = patch_at(kSkinTones, x, width);
    } else {
      colour = hue_sweep(end_to_end(x, width), end_to_end(y - sweep_start, height - sweep_start));
    }
    pixel = to_full_scale(colour);
    ++x;
  }
}

}  // namespace

Picture draw_test_picture(Size size) {
  Picture picture(size);
  for_each_row(size.height, [&](uint32_t y) { draw_row(y, picture); });
  return picture;
}

Picture draw_pattern(Size size, PatternColour colour) {
  constexpr int kStep = kFullScale / 255;
  const auto widen = [](uint8_t channel) { return static_cast<uint16_t>(channel * kStep); };
  return Picture(size, {widen(colour.red), widen(colour.green), widen(colour.blue)});
}

}  // namespace board::screen
