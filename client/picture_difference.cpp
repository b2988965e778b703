#include "pqclient/picture_difference.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include "pqclient/error.h"

namespace pqclient {
namespace {

constexpr double kFullScale = 255;
constexpr double kMidGrey = 128;

void check_sizes(const Picture& first, const Picture& second) {
  if (first.width == second.width && first.height == second.height) return;
  throw Error(ErrorKind::kInput, "pictures of " + std::to_string(first.width) + "x" +
                                     std::to_string(first.height) + " and " +
                                     std::to_string(second.width) + "x" +
                                     std::to_string(second.height) + " pixels cannot be compared");
}

}  // namespace

PictureDifference compare_pictures(const Picture& first, const Picture& second) {
  check_sizes(first, second);
  const std::size_t pixels = first.rgb.size() / 3;
  PictureDifference result;
  double squares = 0;
  std::size_t equal = 0;
  for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
    bool is_equal = true;
    for (std::size_t i = 0; i < 3; ++i) {
      const int difference = second.rgb[3 * pixel + i] - first.rgb[3 * pixel + i];
      ChannelDifference& channel = result.channels.at(i);
      channel.mean += difference;
      channel.mean_distance += std::abs(difference);
      channel.largest = std::max(channel.largest, std::abs(difference));
      squares += difference * difference;
      is_equal = is_equal && difference == 0;
    }
    equal += is_equal ? 1 : 0;
  }
  const auto count = static_cast<double>(pixels);
  for (ChannelDifference& channel : result.channels) {
    channel.mean /= count;
    channel.mean_distance /= count;
  }
  result.equal_part = static_cast<double>(equal) / count;
  result.psnr.reset();
  if (squares > 0) {
    result.psnr = 10 * std::log10(kFullScale * kFullScale * 3 * count / squares);
  }
  return result;
}

Picture difference_picture(const Picture& first, const Picture& second, double gain) {
  check_sizes(first, second);
  Picture picture{first.width, first.height, Bytes(first.rgb.size())};
  std::ranges::transform(first.rgb, second.rgb, picture.rgb.begin(), [gain](int a, int b) {
    return static_cast<std::uint8_t>(
        std::lround(std::clamp(kMidGrey + gain * (b - a), 0.0, kFullScale)));
  });
  return picture;
}

Picture side_by_side(std::span<const Picture> pictures) {
  Picture all;
  for (const Picture& picture : pictures) {
    all.width += picture.width;
    all.height = std::max(all.height, picture.height);
  }
  all.rgb.resize(3 * static_cast<std::size_t>(all.width) * static_cast<std::size_t>(all.height));
  const std::size_t stride = 3 * static_cast<std::size_t>(all.width);
  std::size_t left = 0;
  for (const Picture& picture : pictures) {
    const std::size_t line = 3 * static_cast<std::size_t>(picture.width);
    for (std::size_t row = 0; row < static_cast<std::size_t>(picture.height); ++row) {
      const ByteView pixels = ByteView(picture.rgb).subspan(row * line, line);
      std::ranges::copy(pixels, all.rgb.begin() + static_cast<std::ptrdiff_t>(row * stride + left));
    }
    left += line;
  }
  return all;
}

}  // namespace pqclient
