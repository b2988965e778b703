#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "pqclient/dump.h"
#include "pqclient/error.h"

namespace pqclient {
namespace {

constexpr std::size_t kMaxDumpSize = 512U << 20;

enum class Family { kColours, kLumaChroma };

struct Layout {
  std::string_view name;
  Family family;
  // Colours: bytes per pixel, and the positions of red, green and blue in them.
  int pixel_size;
  std::array<int, 3> position;
  // Luma and chroma: bits per sample, and the pixels across and down that share a chroma sample.
  int bits;
  int across;
  int down;
};

// In the order of the format codes.
constexpr std::array<Layout, 7> kLayouts = {{
    {"rgba", Family::kColours, 4, {0, 1, 2}, 0, 0, 0},
    {"bgr", Family::kColours, 3, {2, 1, 0}, 0, 0, 0},
    {"nv12", Family::kLumaChroma, 0, {}, 8, 2, 2},
    {"nv16", Family::kLumaChroma, 0, {}, 8, 2, 1},
    {"nv24", Family::kLumaChroma, 0, {}, 8, 1, 1},
    {"nv15", Family::kLumaChroma, 0, {}, 10, 2, 2},
    {"rgb", Family::kColours, 3, {0, 1, 2}, 0, 0, 0},
}};

const Layout& layout_of(DumpFormat format) {
  return kLayouts.at(static_cast<std::size_t>(format));
}

// Packed samples, from the lowest bit up.
class Plane {
 public:
  Plane(ByteView bytes, int bits) : bytes_(bytes), bits_(static_cast<std::size_t>(bits)) {}

  [[nodiscard]] unsigned sample(std::size_t index) const {
    if (bits_ == 8) return bytes_[index];
    const std::size_t bit = index * bits_;
    const std::size_t byte = bit / 8;
    // A sample of 10 bits always extends into a second byte, never into a third.
    const unsigned two_bytes = bytes_[byte] | static_cast<unsigned>(bytes_[byte + 1]) << 8;
    return two_bytes >> (bit % 8) & ((1U << bits_) - 1);
  }

 private:
  ByteView bytes_;
  std::size_t bits_;
};

struct Geometry {
  std::size_t chroma_width;   // pairs of Cb and Cr per line
  std::size_t chroma_height;  // lines of pairs
  std::size_t luma_bytes;
  std::size_t chroma_bytes;
};

std::size_t bytes_for(std::size_t samples, int bits) {
  return (samples * static_cast<std::size_t>(bits) + 7) / 8;
}

Geometry geometry_of(int width, int height, const Layout& layout) {
  Geometry geometry{};
  geometry.chroma_width = static_cast<std::size_t>((width + layout.across - 1) / layout.across);
  geometry.chroma_height = static_cast<std::size_t>((height + layout.down - 1) / layout.down);
  const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  geometry.luma_bytes = bytes_for(pixels, layout.bits);
  geometry.chroma_bytes =
      bytes_for(2 * geometry.chroma_width * geometry.chroma_height, layout.bits);
  return geometry;
}

std::uint8_t to_8_bits(double fraction) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(fraction, 0.0, 1.0) * 255.0));
}

// Converts codes to colours.
class ColourDecoder {
 public:
  ColourDecoder(const ColourCoding& coding, int bits) {
    struct Shares {
      double red, blue;
    };
    constexpr std::array<Shares, 3> kShares = {
        {{0.299, 0.114}, {0.2126, 0.0722}, {0.2627, 0.0593}}};
    red_ = kShares.at(static_cast<std::size_t>(coding.matrix)).red;
    blue_ = kShares.at(static_cast<std::size_t>(coding.matrix)).blue;
    const double unit = 1 << (bits - 8);
    const bool is_limited = coding.range == ColourCoding::Range::kLimited;
    const double all = (1 << bits) - 1;
    black_ = is_limited ? 16 * unit : 0;
    luma_range_ = is_limited ? 219 * unit : all;
    neutral_ = 128 * unit;
    chroma_range_ = is_limited ? 224 * unit : all;
  }

  [[nodiscard]] std::array<std::uint8_t, 3> colour(unsigned luma, unsigned cb, unsigned cr) const {
    const double y = (luma - black_) / luma_range_;
    const double red = y + 2.0 * (1.0 - red_) * (cr - neutral_) / chroma_range_;
    const double blue = y + 2.0 * (1.0 - blue_) * (cb - neutral_) / chroma_range_;
    // Green is the rest of luma after the shares of red and blue.
    const double green = (y - red_ * red - blue_ * blue) / (1.0 - red_ - blue_);
    return {to_8_bits(red), to_8_bits(green), to_8_bits(blue)};
  }

 private:
  double red_ = 0;  // share in luma
  double blue_ = 0;
  double black_ = 0;  // codes
  double luma_range_ = 0;
  double neutral_ = 0;
  double chroma_range_ = 0;
};

void decode_colours(const Dump& dump, const Layout& layout, Picture& picture) {
  const auto step = static_cast<std::size_t>(layout.pixel_size);
  const std::size_t pixels = picture.rgb.size() / 3;
  for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
    for (std::size_t colour = 0; colour < 3; ++colour) {
      picture.rgb[3 * pixel + colour] =
          dump.data[step * pixel + static_cast<std::size_t>(layout.position.at(colour))];
    }
  }
}

void decode_luma_chroma(const Dump& dump, const Layout& layout, const ColourCoding& coding,
                        Picture& picture) {
  const Geometry geometry = geometry_of(dump.width, dump.height, layout);
  const ByteView bytes(dump.data);
  const Plane luma(bytes.first(geometry.luma_bytes), layout.bits);
  const Plane chroma(bytes.subspan(geometry.luma_bytes), layout.bits);
  const ColourDecoder decoder(coding, layout.bits);
  const auto width = static_cast<std::size_t>(dump.width);
  auto* out = picture.rgb.data();
  for (std::size_t row = 0; row < static_cast<std::size_t>(dump.height); ++row) {
    const std::size_t chroma_row = row / static_cast<std::size_t>(layout.down);
    for (std::size_t column = 0; column < width; ++column) {
      const std::size_t pair =
          chroma_row * geometry.chroma_width + column / static_cast<std::size_t>(layout.across);
      const auto colour = decoder.colour(luma.sample(row * width + column), chroma.sample(2 * pair),
                                         chroma.sample(2 * pair + 1));
      out = std::ranges::copy(colour, out).out;
    }
  }
}

}  // namespace

std::string_view format_name(DumpFormat format) {
  return layout_of(format).name;
}

std::size_t dump_size(int width, int height, DumpFormat format) {
  const Layout& layout = layout_of(format);
  if (layout.family == Family::kColours) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
           static_cast<std::size_t>(layout.pixel_size);
  }
  const Geometry geometry = geometry_of(width, height, layout);
  return geometry.luma_bytes + geometry.chroma_bytes;
}

Dump start_dump(const DumpHeader& header) {
  if (header.format >= kLayouts.size()) {
    throw Error(ErrorKind::kBadAnswer, "the dump has the format code " +
                                           std::to_string(header.format) + "; valid are 0 to " +
                                           std::to_string(kLayouts.size() - 1));
  }
  Dump dump;
  dump.width = header.width;
  dump.height = header.height;
  dump.format = static_cast<DumpFormat>(header.format);
  const std::size_t size = dump_size(dump.width, dump.height, dump.format);
  if (size == 0 || size > kMaxDumpSize) {
    throw Error(ErrorKind::kBadAnswer, "the dump claims to be a picture of " +
                                           std::to_string(dump.width) + "x" +
                                           std::to_string(dump.height) + " pixels");
  }
  dump.data.resize(size);
  return dump;
}

Picture decode(const Dump& dump, const ColourCoding& coding) {
  const Layout& layout = layout_of(dump.format);
  const std::size_t size = dump_size(dump.width, dump.height, dump.format);
  if (dump.data.size() != size) {
    throw Error(ErrorKind::kBadAnswer,
                "a dump of " + std::to_string(dump.width) + "x" + std::to_string(dump.height) +
                    " pixels in " + std::string(layout.name) + " has " + std::to_string(size) +
                    " bytes, not " + std::to_string(dump.data.size()));
  }
  Picture picture{dump.width, dump.height, {}};
  picture.rgb.resize(3 * static_cast<std::size_t>(dump.width) *
                     static_cast<std::size_t>(dump.height));
  if (layout.family == Family::kColours) {
    decode_colours(dump, layout, picture);
  } else {
    decode_luma_chroma(dump, layout, coding, picture);
  }
  return picture;
}

}  // namespace pqclient
