// The difference between two pictures, in numbers and as a picture.
// No I/O here; any thread may call.
#ifndef PQCLIENT_PICTURE_DIFFERENCE_H_
#define PQCLIENT_PICTURE_DIFFERENCE_H_

#include <array>
#include <optional>
#include <span>

#include "pqclient/dump.h"

namespace pqclient {

// For red, green and blue: second picture minus first, in codes of 8 bits.
struct ChannelDifference {
  double mean = 0;           // signed: brighter is positive
  double mean_distance = 0;  // unsigned
  int largest = 0;           // unsigned
};

struct PictureDifference {
  std::array<ChannelDifference, 3> channels;
  double equal_part = 0;             // fraction of equal pixels, 0 to 1
  std::optional<double> psnr = 0.0;  // peak signal-to-noise ratio in dB; none if all are equal
};

// The pictures must have the same size; throws Error kInput otherwise.
PictureDifference compare_pictures(const Picture& first, const Picture& second);

// Mid-grey where the two are equal; elsewhere off mid-grey by `gain` times the difference.
Picture difference_picture(const Picture& first, const Picture& second, double gain);

// From left to right on black, each in its own size, aligned at the top.
Picture side_by_side(std::span<const Picture> pictures);

}  // namespace pqclient

#endif  // PQCLIENT_PICTURE_DIFFERENCE_H_
