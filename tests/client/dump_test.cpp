#include "pqclient/dump.h"

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <string>

#include "pqclient/error.h"
#include "pqclient/picture_difference.h"
#include "pqclient/png.h"

namespace pqclient {
namespace {

// One letter per pixel.
std::string colours_of(const Bytes& rgb) {
  std::string letters;
  for (std::size_t i = 0; i + 2 < rgb.size(); i += 3) {
    const int number = rgb[i] << 16 | rgb[i + 1] << 8 | rgb[i + 2];
    letters += number == 0xFFFFFF   ? 'W'
               : number == 0        ? 'K'
               : number == 0xFF0100 ? 'R'
               : number == 0x0100FF ? 'B'
                                    : '?';
  }
  return letters;
}

struct Example {
  DumpFormat format;
  int width, height;
  Bytes data;
  const char* colours;
};

// BT.709 in 8 bits: white is Y 235, black Y 16, both with Cb and Cr 128; red is 63, 102, 240, blue
// 32, 240, 118, both rounded by a step in green or red. Values out of range are limited.
// In NV15 white, black and grey chroma are 940, 64 and 512, packed from the lowest bit up.
TEST(DumpFormats, BecomeRedGreenBlue) {
  for (const auto& [format, width, height, data, colours] : {
           Example{DumpFormat::kRgba, 2, 1, {255, 1, 0, 9, 1, 0, 255, 9}, "RB"},
           Example{DumpFormat::kBgr, 2, 1, {0, 1, 255, 255, 0, 1}, "RB"},
           Example{DumpFormat::kRgb, 1, 2, {255, 1, 0, 1, 0, 255}, "RB"},
           Example{DumpFormat::kNv12, 2, 2, {63, 63, 63, 63, 102, 240}, "RRRR"},
           Example{DumpFormat::kNv12, 3, 1, {235, 16, 32, 128, 128, 240, 118}, "WKB"},
           Example{DumpFormat::kNv16, 2, 2, {63, 63, 235, 16, 102, 240, 128, 128}, "RRWK"},
           Example{DumpFormat::kNv24, 2, 1, {63, 255, 102, 240, 128, 128}, "RW"},
           Example{DumpFormat::kNv15,
                   4,
                   2,
                   {0xAC, 0x03, 0x01, 0x04, 0xEB, 0xAC, 0x03, 0x01, 0x04, 0xEB, 0x00, 0x02, 0x08,
                    0x20, 0x80},
                   "WKKWWKKW"},
       }) {
    EXPECT_EQ(dump_size(width, height, format), data.size()) << format_name(format);
    EXPECT_EQ(colours_of(decode({width, height, format, data}).rgb), colours)
        << format_name(format);
  }
}

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

TEST(DumpHeader, IsRefusedWhenItCannotBe) {
  EXPECT_EQ(start_dump({2, 2, 6}).data.size(), 12U);
  EXPECT_THROW(start_dump({2, 2, 7}), Error);
  EXPECT_THROW(start_dump({0, 2, 0}), Error);
  EXPECT_THROW(start_dump({65535, 65535, 0}), Error);
  EXPECT_THROW(decode({2, 2, DumpFormat::kRgb, Bytes(11)}), Error);
}

TEST(Png, HoldsThePicture) {
  const Picture picture{2, 1, {255, 0, 0, 1, 2, 3}};
  const Bytes file = encode_png(picture);
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  ASSERT_NE(png_image_begin_read_from_memory(&image, file.data(), file.size()), 0);
  EXPECT_EQ(image.width, 2U);
  EXPECT_EQ(image.height, 1U);
  image.format = PNG_FORMAT_RGB;
  Bytes pixels(PNG_IMAGE_SIZE(image));
  ASSERT_NE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr), 0);
  EXPECT_EQ(pixels, picture.rgb);
}

}  // namespace
}  // namespace pqclient
