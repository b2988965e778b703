#include "engine/cube_file.h"

#include <array>
#include <charconv>

namespace board::engine {
namespace {

constexpr int kDecimals = 6;

// printf would follow the process's locale; readers of the format accept a point only.
void append_channel(std::string& text, uint16_t channel) {
  std::array<char, 16> digits{};
  const double value = static_cast<double>(channel) / kFullScale;
  const auto end =
      std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, kDecimals);
  text.append(digits.begin(), end.ptr);
}

}  // namespace

std::string to_cube_text(const Lut3d& lut) {
  std::string text =
      "TITLE \"simulated board\"\nLUT_3D_SIZE " + std::to_string(Lut3d::kEdge) + "\n";
  for (const Rgb16& point : lut.points) {
    append_channel(text, point.red);
    text += ' ';
    append_channel(text, point.green);
    text += ' ';
    append_channel(text, point.blue);
    text += '\n';
  }
  return text;
}

}  // namespace board::engine
