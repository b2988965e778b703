// Colours as the simulated board's picture stages pass them on, and BT.709's luma and chroma.
#ifndef BOARD_COLOUR_RGB_H_
#define BOARD_COLOUR_RGB_H_

#include <cstdint>

namespace board {

// A channel's full scale, in pictures, gamma tables and 3D tables alike.
inline constexpr uint16_t kFullScale = 65535;

// Display-referred (gamma-coded) R'G'B', 0..kFullScale a channel.
struct Rgb16 {
  uint16_t red = 0;
  uint16_t green = 0;
  uint16_t blue = 0;
  friend bool operator==(const Rgb16&, const Rgb16&) = default;
};

// The same colours for arithmetic: 0..1 a channel; a stage may leave that range before it clips.
struct Rgb {
  double red = 0;
  double green = 0;
  double blue = 0;
};

// Luma 0..1 and colour differences -0.5..0.5.
struct YCbCr {
  double y = 0;
  double cb = 0;
  double cr = 0;
};

// Luma coefficients and scaling from Recommendation ITU-R BT.709.
inline constexpr double kRedLuma = 0.2126;
inline constexpr double kBlueLuma = 0.0722;
inline constexpr double kGreenLuma = 1 - kRedLuma - kBlueLuma;

constexpr YCbCr to_ycbcr(const Rgb& colour) {
  const double y = kRedLuma * colour.red + kGreenLuma * colour.green + kBlueLuma * colour.blue;
  return {y, (colour.blue - y) / (2 * (1 - kBlueLuma)), (colour.red - y) / (2 * (1 - kRedLuma))};
}

constexpr Rgb to_rgb(const YCbCr& colour) {
  const double red = colour.y + 2 * (1 - kRedLuma) * colour.cr;
  const double blue = colour.y + 2 * (1 - kBlueLuma) * colour.cb;
  return {red, (colour.y - kRedLuma * red - kBlueLuma * blue) / kGreenLuma, blue};
}

constexpr Rgb to_unit(const Rgb16& colour) {
  return {static_cast<double>(colour.red) / kFullScale,
          static_cast<double>(colour.green) / kFullScale,
          static_cast<double>(colour.blue) / kFullScale};
}

// Clips to 0..1 and rounds to the nearest step. Half steps go up also when the arithmetic before
// has left them a hair low: a table that changes nothing then is exactly that.
constexpr uint16_t to_full_scale(double channel) {
  constexpr double kHalfAndAHair = 0.5 + 1e-6;
  if (!(channel > 0)) return 0;
  if (channel >= 1) return kFullScale;
  return static_cast<uint16_t>(channel * kFullScale + kHalfAndAHair);
}

constexpr Rgb16 to_full_scale(const Rgb& colour) {
  return {to_full_scale(colour.red), to_full_scale(colour.green), to_full_scale(colour.blue)};
}

}  // namespace board

#endif  // BOARD_COLOUR_RGB_H_
