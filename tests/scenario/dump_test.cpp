// Dumps of a large picture in every format: they arrive whole and hold what the screen is given and
// what it makes of it.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <ostream>

#include "scenario/screen_test.h"
#include "screen/test_picture.h"

namespace scenario {
namespace {

using board::screen::Size;

#ifdef __SANITIZE_THREAD__
constexpr Size kSize = {1280, 720};  // the daemon gives a dump 4.2 seconds
#else
constexpr Size kSize = {3840, 2160};
#endif
constexpr size_t kPixels = size_t{kSize.width} * kSize.height;
constexpr size_t kHeaderSize = 5;

struct Format {
  const char* name;
  uint8_t code;
  double bytes_a_pixel;
  std::array<size_t, 3> order{};  // of red, green and blue in a packed pixel
  uint32_t across = 0, down = 0;  // pixels of one chroma sample; 0: packed
  uint32_t bits = 8;              // of a luma or chroma sample
};

void PrintTo(const Format& format, std::ostream* stream) {
  *stream << format.name;
}

// Channels 0..255. Colours from luma and chroma may leave that range, as they are not clipped here.
struct Colour {
  double red, green, blue;
  double luma() const { return board::to_ycbcr({red, green, blue}).y; }
};

Colour to_bytes(const board::Rgb16& colour) {
  return {colour.red / 257.0, colour.green / 257.0, colour.blue / 257.0};
}

// A dump's bytes, read pixel by pixel as a tool would.
class Dump {
 public:
  Dump(const Format& format, std::string_view bytes) : format_(format), bytes_(bytes) {}

  Colour at(uint32_t x, uint32_t y) const {
    const size_t pixel = size_t{y} * kSize.width + x;
    if (format_.across == 0) {
      const auto start = pixel * static_cast<size_t>(format_.bytes_a_pixel);
      const auto channel = [&](size_t i) { return double(byte(start + format_.order[i])); };
      return {channel(0), channel(1), channel(2)};
    }
    const size_t columns = kSize.width / format_.across;
    const size_t pair = y / format_.down * columns + x / format_.across;
    const double luma = (sample(pixel) - 16) * 255 / 219;
    const double cb = (sample(kPixels + 2 * pair) - 128) * 255 / 224;
    const double cr = (sample(kPixels + 2 * pair + 1) - 128) * 255 / 224;
    // Recommendation ITU-R BT.709.
    return {luma + 1.5748 * cr, luma - 0.1873 * cb - 0.4681 * cr, luma + 1.8556 * cb};
  }

 private:
  uint8_t byte(size_t index) const { return static_cast<uint8_t>(bytes_[index]); }
  // On the scale of 8 bits. Those of ten bits are packed from the lowest bit up.
  double sample(size_t index) const {
    if (format_.bits == 8) return byte(index);
    const size_t bit = 10 * index;
    const unsigned two_bytes = byte(bit / 8) | unsigned{byte(bit / 8 + 1)} << 8;
    return (two_bytes >> bit % 8 & 0x3FF) / 4.0;
  }

  const Format& format_;
  std::string_view bytes_;
};

class LargeDump : public ScreenTest, public testing::WithParamInterface<Format> {
 protected:
  void expect_picture(uint8_t side, const Picture& expected) {
    const Format& format = GetParam();
    const auto size = static_cast<size_t>(kPixels * format.bytes_a_pixel);
    const std::string reply = command(2, {side}, std::chrono::seconds(30), kHeaderSize + size);
    ASSERT_EQ(reply.size(), kHeaderSize + size);
    const auto [width, height] = kSize;
    const std::string header = {static_cast<char>(width), static_cast<char>(width >> 8),
                                static_cast<char>(height), static_cast<char>(height >> 8),
                                static_cast<char>(format.code)};
    EXPECT_EQ(reply.substr(0, kHeaderSize), header);

    const Dump dump(format, std::string_view(reply).substr(kHeaderSize));
    for (uint32_t y = 0; y < height; y += 17) {
      for (uint32_t x = 0; x < width; x += 13) {  // each luma is its own pixel's
        const double luma = to_bytes(expected.row(y)[x]).luma();
        ASSERT_NEAR(dump.at(x, y).luma(), luma, 1.2) << x << ", " << y;
      }
    }
    // Chroma is compared where it is even: in the bars (three sixteenths high) and skin tones.
    for (const auto& [patches, sixteenth] : {std::pair{8, 1}, {8, 4}, {6, 8}}) {
      for (int patch = 0; patch < patches; ++patch) {
        const auto x = static_cast<uint32_t>(width * (2 * patch + 1) / (2 * patches));
        const auto y = static_cast<uint32_t>(height * sixteenth / 16);
        const Colour wanted = to_bytes(expected.row(y)[x]);
        const Colour found = dump.at(x, y);
        EXPECT_NEAR(found.red, wanted.red, 2) << x << ", " << y;
        EXPECT_NEAR(found.green, wanted.green, 2) << x << ", " << y;
        EXPECT_NEAR(found.blue, wanted.blue, 2) << x << ", " << y;
      }
    }
  }
};

TEST_P(LargeDump, ArrivesWholeFromBothSides) {
  board::Description description;
  description.dump_width = kSize.width;
  description.dump_height = kSize.height;
  description.dump_format_in = description.dump_format_out = GetParam().name;
  power_on(description);
  put_documents("tv");
  start_daemon();
  change(R"({"op":"replace","path":"/gamma/gammaTab_B/0","value":0})");
  const Picture input = board::screen::draw_test_picture(kSize);
  expect_picture(0x80, input);
  ASSERT_FALSE(on_screen().gamma.blue.empty()) << "both sides would be alike";
  expect_picture(0x81, board::screen::Pipeline(on_screen()).apply(input));
}

INSTANTIATE_TEST_SUITE_P(
    , LargeDump,
    testing::Values(Format{"rgba", 0, 4, {0, 1, 2}}, Format{"bgr", 1, 3, {2, 1, 0}},
                    Format{"nv12", 2, 1.5, {}, 2, 2}, Format{"nv16", 3, 2, {}, 2, 1},
                    Format{"nv24", 4, 3, {}, 1, 1}, Format{"nv15", 5, 1.875, {}, 2, 2, 10},
                    Format{"rgb", 6, 3, {0, 1, 2}}),
    [](const auto& parameter) { return parameter.param.name; });

}  // namespace
}  // namespace scenario
