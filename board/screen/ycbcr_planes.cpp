#include "screen/ycbcr_planes.h"

#include "screen/row_bands.h"

namespace board::screen {
namespace {

// Limited range at 8 bits, from BT.709's quantization.
constexpr double kBlackLevel = 16;
constexpr double kLumaRange = 219;
constexpr double kChromaZero = 128;
constexpr double kChromaRange = 224;

// Rounds by adding a half, as all levels are positive; several times faster than std::lround.
uint16_t sample(double level, double bit_scale) {
  const double rounded_up = level * bit_scale + 0.5;
  return static_cast<uint16_t>(rounded_up);
}

}  // namespace

YCbCrPlanes to_planes(const Picture& picture, Sampling sampling) {
  const uint32_t width = picture.size.width;
  const uint32_t height = picture.size.height;
  const uint32_t chroma_width = width / sampling.across;
  const uint32_t chroma_height = height / sampling.down;
  const double bit_scale = 1 << (sampling.bits - 8);
  const double chroma_share = 1.0 / (sampling.across * sampling.down);
  YCbCrPlanes planes;
  planes.luma.resize(size_t{width} * height);
  planes.chroma.resize(size_t{chroma_width} * chroma_height * 2);

  const auto convert_block = [&](uint32_t left, uint32_t top) {
    YCbCr sum;
    for (uint32_t y = top; y < top + sampling.down; ++y) {
      for (uint32_t x = left; x < left + sampling.across; ++x) {
        const size_t pixel = size_t{y} * width + x;
        const YCbCr colour = to_ycbcr(to_unit(picture.pixels[pixel]));
        planes.luma[pixel] = sample(kBlackLevel + kLumaRange * colour.y, bit_scale);
        sum.cb += colour.cb;
        sum.cr += colour.cr;
      }
    }
    const size_t pair = (size_t{top / sampling.down} * chroma_width + left / sampling.across) * 2;
    planes.chroma[pair] = sample(kChromaZero + kChromaRange * sum.cb * chroma_share, bit_scale);
    planes.chroma[pair + 1] = sample(kChromaZero + kChromaRange * sum.cr * chroma_share, bit_scale);
  };
  for_each_row(chroma_height, [&](uint32_t row) {
    for (uint32_t column = 0; column < chroma_width; ++column) {
      convert_block(column * sampling.across, row * sampling.down);
    }
  });
  return planes;
}

}  // namespace board::screen
