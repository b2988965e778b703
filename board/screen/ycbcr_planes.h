// A picture as samples of luma and chroma.
#ifndef BOARD_SCREEN_YCBCR_PLANES_H_
#define BOARD_SCREEN_YCBCR_PLANES_H_

#include <cstdint>
#include <vector>

#include "screen/picture.h"

namespace board::screen {

struct Sampling {
  uint32_t across = 1;  // pixels in a row that share a chroma sample
  uint32_t down = 1;    // rows that share it
  int bits = 8;         // of a sample
};

// Samples in limited range: luma 16..235 and chroma 16..240 at 8 bits, times four at 10.
struct YCbCrPlanes {
  std::vector<uint16_t> luma;    // one a pixel
  std::vector<uint16_t> chroma;  // Cb, Cr by turns, rows from the top
};

// The picture's width and height are multiples of `across` and `down`.
YCbCrPlanes to_planes(const Picture& picture, Sampling sampling);

}  // namespace board::screen

#endif  // BOARD_SCREEN_YCBCR_PLANES_H_
