#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <vector>

#include "screen/pixel_format.h"

using board::Rgb16;
using board::screen::encode_picture;
using board::screen::fitting_size;
using board::screen::parse_pixel_format;
using board::screen::Picture;
using board::screen::PixelFormat;
using board::screen::Size;

namespace {

using Bytes = std::vector<uint8_t>;
constexpr Rgb16 kRed = {65535, 0, 0};
constexpr Rgb16 kBlue = {0, 0, 65535};
constexpr Rgb16 kWhite = {65535, 65535, 65535};

struct Case {
  const char* name;
  double bytes_a_pixel;
  Bytes red_start;  // what a red picture begins with
  Bytes red_end;    // and ends with
};

void PrintTo(const Case& test, std::ostream* stream) {
  *stream << test.name;
}

class DumpFormat : public testing::TestWithParam<Case> {};

// Red in limited range BT.709: Y 62.6, Cb 102.3, Cr 240 at 8 bits; 250, 409, 960 at 10.
TEST_P(DumpFormat, HasItsSizeAndLayout) {
  const auto format = parse_pixel_format(GetParam().name);
  ASSERT_TRUE(format);
  EXPECT_EQ(name_of(*format), GetParam().name);
  const Bytes bytes = encode_picture(Picture({16, 6}, kRed), *format);
  ASSERT_EQ(static_cast<double>(bytes.size()), 16 * 6 * GetParam().bytes_a_pixel);
  const auto& [name, size, start, end] = GetParam();
  EXPECT_TRUE(std::equal(start.begin(), start.end(), bytes.begin()));
  EXPECT_TRUE(std::equal(end.rbegin(), end.rend(), bytes.rbegin()));
}

// Ten bits: 250 is 0x0FA four times over: FA E8 A3 8F 3E; Cb 409, Cr 960: 99 01 9F 19 F0.
INSTANTIATE_TEST_SUITE_P(, DumpFormat,
                         testing::Values(Case{"rgba", 4, {255, 0, 0, 255, 255}, {255, 0, 0, 255}},
                                         Case{"bgr", 3, {0, 0, 255, 0}, {0, 0, 255}},
                                         Case{"rgb", 3, {255, 0, 0, 255}, {255, 0, 0}},
                                         Case{"nv12", 1.5, {63, 63, 63}, {102, 240, 102, 240}},
                                         Case{"nv16", 2, {63, 63, 63}, {102, 240, 102, 240}},
                                         Case{"nv24", 3, {63, 63, 63}, {102, 240, 102, 240}},
                                         Case{"nv15",
                                              1.875,
                                              {0xFA, 0xE8, 0xA3, 0x8F, 0x3E, 0xFA},
                                              {0x99, 0x01, 0x9F, 0x19, 0xF0}}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(DumpFormats, ShareChromaAmongTheRightPixels) {
  // Red and blue by turns in the upper row, white in the lower.
  Picture picture({4, 2}, kWhite);
  for (uint32_t x = 0; x < 4; ++x)
    picture.row(0)[x] = x % 2 == 0 ? kRed : kBlue;
  const auto chroma = [&](PixelFormat format, size_t at) {
    return encode_picture(picture, format)[8 + at];
  };
  EXPECT_EQ(chroma(PixelFormat::kNv24, 0), 102);  // red's Cb
  EXPECT_EQ(chroma(PixelFormat::kNv24, 2), 240);  // blue's
  EXPECT_EQ(chroma(PixelFormat::kNv16, 0), 171);  // their mean
  EXPECT_EQ(chroma(PixelFormat::kNv16, 4), 128);  // white, in the second row
  EXPECT_EQ(chroma(PixelFormat::kNv12, 0), 150);  // mean of all four
}

TEST(DumpFormats, CutTheSizeToWhatTheyCanHold) {
  EXPECT_EQ(fitting_size(PixelFormat::kRgb, {7, 5}), (Size{7, 5}));
  EXPECT_EQ(fitting_size(PixelFormat::kNv24, {7, 5}), (Size{7, 5}));
  EXPECT_EQ(fitting_size(PixelFormat::kNv16, {7, 5}), (Size{6, 5}));
  EXPECT_EQ(fitting_size(PixelFormat::kNv12, {7, 5}), (Size{6, 4}));
  EXPECT_EQ(fitting_size(PixelFormat::kNv15, {7, 5}), (Size{4, 4}));
  EXPECT_FALSE(parse_pixel_format("yuv"));
}

}  // namespace
