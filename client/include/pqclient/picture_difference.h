// Two pictures side by side, and how far they are apart.
// No I/O here; any thread may call.
#ifndef PQCLIENT_PICTURE_DIFFERENCE_H_
#define PQCLIENT_PICTURE_DIFFERENCE_H_

#include <array>
#include <optional>
#include <span>

#include "pqclient/dump.h"

namespace pqclient {

// Of red, green and blue, second picture minus first, in codes of 8 bits.
struct ChannelDifference {
  double mean = 0;           // with its sign: brighter is positive
  double mean_distance = 0;  // without
  int largest = 0;           // without its sign
};

struct PictureDifference {
  std::array<ChannelDifference, 3> channels;
  double equal_part = 0;             // of the pixels, 0 to 1
  std::optional<double> psnr = 0.0;  // peak signal-to-noise ratio in dB; none when all are equal
};

// Of two pictures of one size; throws Error kInput otherwise.
PictureDifference compare_pictures(const Picture& first, const Picture& second);

// Mid-grey where the two are alike, otherwise off it by `gain` times the difference.
Picture difference_picture(const Picture& first, const Picture& second, double gain);

// From left to right, each at its own size from the top, on black.
Picture side_by_side(std::span<const Picture> pictures);

}  // namespace pqclient

#endif  // PQCLIENT_PICTURE_DIFFERENCE_H_
