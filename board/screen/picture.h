// A picture in memory.
#ifndef BOARD_SCREEN_PICTURE_H_
#define BOARD_SCREEN_PICTURE_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "colour/rgb.h"

namespace board::screen {

struct Size {
  uint32_t width = 0;
  uint32_t height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

// Rows from the top, each from the left, without gaps.
struct Picture {
  explicit Picture(Size picture_size, Rgb16 fill = {})
      : size(picture_size), pixels(size_t{size.width} * size.height, fill) {}

  [[nodiscard]] std::span<Rgb16> row(uint32_t y) {
    return std::span(pixels).subspan(size_t{y} * size.width, size.width);
  }
  [[nodiscard]] std::span<const Rgb16> row(uint32_t y) const {
    return std::span(pixels).subspan(size_t{y} * size.width, size.width);
  }

  Size size;
  std::vector<Rgb16> pixels;
};

}  // namespace board::screen

#endif  // BOARD_SCREEN_PICTURE_H_
