// The client's decoding against the encoding of the simulated board, which knows nothing of it.
#include <gtest/gtest.h>

#include <algorithm>

#include "pqclient/dump.h"
#include "pqclient/picture_difference.h"
#include "screen/pixel_format.h"
#include "screen/test_picture.h"

namespace pqclient {
namespace {

using BoardPicture = board::screen::Picture;

constexpr board::screen::Size kSize = {640, 360};

// Colours all over the cube, even within each 2x2 pixels: no shared chroma sample loses anything.
BoardPicture even_picture() {
  BoardPicture picture(kSize);
  for (std::uint32_t y = 0; y < kSize.height; ++y) {
    for (std::uint32_t x = 0; x < kSize.width; ++x) {
      const auto channel = [](std::uint32_t value) {
        return static_cast<std::uint16_t>(value % 256 * 257);
      };
      picture.pixels[y * kSize.width + x] = {channel(x / 2 * 5), channel(y / 2 * 7),
                                             channel((x / 2 + y / 2) * 11)};
    }
  }
  return picture;
}

Picture in_8_bits(const BoardPicture& picture) {
  Picture result{static_cast<int>(kSize.width), static_cast<int>(kSize.height), {}};
  for (const board::Rgb16& pixel : picture.pixels) {
    for (const std::uint16_t channel : {pixel.red, pixel.green, pixel.blue})
      result.rgb.push_back(static_cast<std::uint8_t>((channel + 128) / 257));
  }
  return result;
}

struct Format {
  const char* name;
  int rounding;          // the most that quantizing luma and chroma may move a channel
  double mean_distance;  // of the test picture, with the chroma that neighbours share
};

class DumpFormatOfTheBoard : public testing::TestWithParam<Format> {
 protected:
  static PictureDifference round_trip(const BoardPicture& picture) {
    const auto format = *board::screen::parse_pixel_format(GetParam().name);
    const Dump dump = {static_cast<int>(kSize.width), static_cast<int>(kSize.height),
                       static_cast<DumpFormat>(format),
                       board::screen::encode_picture(picture, format)};
    EXPECT_EQ(format_name(dump.format), GetParam().name);
    return compare_pictures(in_8_bits(picture), decode(dump));
  }
};

TEST_P(DumpFormatOfTheBoard, DecodesToWithinRounding) {
  for (const ChannelDifference& channel : round_trip(even_picture()).channels)
    EXPECT_LE(channel.largest, GetParam().rounding);
}

TEST_P(DumpFormatOfTheBoard, KeepsAPictureButForSharedChroma) {
  for (const ChannelDifference& channel :
       round_trip(board::screen::draw_test_picture(kSize)).channels) {
    EXPECT_LE(channel.mean_distance, GetParam().mean_distance);
    EXPECT_NEAR(channel.mean, 0, 0.2);
  }
}

// One step of 8-bit chroma is up to 2.1 codes of blue, and half of it is lost in rounding.
INSTANTIATE_TEST_SUITE_P(, DumpFormatOfTheBoard,
                         testing::Values(Format{"rgba", 0, 0}, Format{"bgr", 0, 0},
                                         Format{"rgb", 0, 0}, Format{"nv24", 2, 0.7},
                                         Format{"nv16", 2, 1.5}, Format{"nv12", 2, 2},
                                         Format{"nv15", 1, 2}),
                         [](const auto& format) { return format.param.name; });

// Red by each matrix, in 8 bits; white and black by each range.
TEST(ColourCoding, ChangesMatrixAndRange) {
  using Coding = ColourCoding;
  const auto colour = [](Bytes data, const Coding& coding) {
    return decode({1, 1, DumpFormat::kNv24, std::move(data)}, coding).rgb;
  };
  const auto is_near = [](const Bytes& rgb, const Bytes& wanted) {
    return std::ranges::equal(rgb, wanted, [](int a, int b) { return std::abs(a - b) <= 2; });
  };
  const Bytes red = {255, 0, 0};
  EXPECT_TRUE(is_near(colour({63, 102, 240}, {}), red));
  EXPECT_TRUE(is_near(colour({81, 90, 240}, {.matrix = Coding::Matrix::kBt601}), red));
  EXPECT_TRUE(is_near(colour({74, 97, 240}, {.matrix = Coding::Matrix::kBt2020}), red));
  EXPECT_EQ(colour({255, 128, 128}, {.range = Coding::Range::kFull}), Bytes(3, 255));
  EXPECT_EQ(colour({16, 128, 128}, {.range = Coding::Range::kFull}), Bytes(3, 16));
}

TEST(PictureDifference, IsCountedAndDrawn) {
  const Picture first{2, 1, {10, 20, 30, 0, 0, 0}};
  const Picture second{2, 1, {10, 20, 30, 4, 0, 100}};
  const PictureDifference difference = compare_pictures(first, second);
  EXPECT_EQ(difference.channels[0].mean, 2);
  EXPECT_EQ(difference.channels[2].largest, 100);
  EXPECT_EQ(difference.equal_part, 0.5);
  EXPECT_EQ(compare_pictures(first, first).psnr, std::nullopt);
  EXPECT_EQ(difference_picture(first, second, 4).rgb, (Bytes{128, 128, 128, 144, 128, 255}));
  const Picture tall{1, 2, {1, 2, 3, 4, 5, 6}};
  EXPECT_EQ(side_by_side(std::array{first, tall}).rgb,
            (Bytes{10, 20, 30, 0, 0, 0, 1, 2, 3, 0, 0, 0, 0, 0, 0, 4, 5, 6}));
}

}  // namespace
}  // namespace pqclient
