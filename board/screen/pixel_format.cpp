#include "screen/pixel_format.h"

#include <algorithm>
#include <array>
#include <span>

#include "screen/ycbcr_planes.h"

namespace board::screen {
namespace {

struct Named {
  PixelFormat format;
  std::string_view name;
  Sampling sampling;  // of the Y'CbCr ones
};

constexpr std::array<Named, 7> kFormats = {{{PixelFormat::kRgba, "rgba", {}},
                                            {PixelFormat::kBgr, "bgr", {}},
                                            {PixelFormat::kNv12, "nv12", {2, 2, 8}},
                                            {PixelFormat::kNv16, "nv16", {2, 1, 8}},
                                            {PixelFormat::kNv24, "nv24", {1, 1, 8}},
                                            {PixelFormat::kNv15, "nv15", {2, 2, 10}},
                                            {PixelFormat::kRgb, "rgb", {}}}};

const Named& entry_of(PixelFormat format) {
  return *std::find_if(kFormats.begin(), kFormats.end(),
                       [format](const Named& entry) { return entry.format == format; });
}

constexpr uint32_t kSamplesAGroup = 4;  // of ten bits, in five bytes
constexpr uint32_t kBytesAGroup = 5;

uint8_t to_byte(uint16_t channel) {
  return static_cast<uint8_t>((uint32_t{channel} * 255 + kFullScale / 2) / kFullScale);
}

template <size_t Channels>
std::vector<uint8_t> pack(const Picture& picture,
                          const std::array<uint16_t Rgb16::*, Channels>& order, bool alpha) {
  std::vector<uint8_t> bytes;
  bytes.reserve(picture.pixels.size() * (Channels + (alpha ? 1 : 0)));
  for (const Rgb16& pixel : picture.pixels) {
    for (const auto channel : order)
      bytes.push_back(to_byte(pixel.*channel));
    if (alpha) bytes.push_back(0xFF);
  }
  return bytes;
}

void append_bytes(std::span<const uint16_t> samples, std::vector<uint8_t>& bytes) {
  std::transform(samples.begin(), samples.end(), std::back_inserter(bytes),
                 [](uint16_t sample) { return static_cast<uint8_t>(sample); });
}

void append_ten_bits(std::span<const uint16_t> samples, std::vector<uint8_t>& bytes) {
  for (size_t start = 0; start < samples.size(); start += kSamplesAGroup) {
    uint64_t group = 0;
    for (size_t i = 0; i < kSamplesAGroup; ++i)
      group |= uint64_t{samples[start + i]} << (10 * i);
    for (size_t i = 0; i < kBytesAGroup; ++i)
      bytes.push_back(static_cast<uint8_t>(group >> (8 * i)));
  }
}

std::vector<uint8_t> pack_planes(const Picture& picture, Sampling sampling) {
  const YCbCrPlanes planes = to_planes(picture, sampling);
  const auto append = sampling.bits == 8 ? append_bytes : append_ten_bits;
  std::vector<uint8_t> bytes;
  bytes.reserve((planes.luma.size() + planes.chroma.size()) * sampling.bits / 8);
  append(planes.luma, bytes);
  append(planes.chroma, bytes);
  return bytes;
}

}  // namespace

std::optional<PixelFormat> parse_pixel_format(std::string_view name) {
  for (const Named& entry : kFormats) {
    if (entry.name == name) return entry.format;
  }
  return std::nullopt;
}

std::string_view name_of(PixelFormat format) {
  return entry_of(format).name;
}

Size fitting_size(PixelFormat format, Size wanted) {
  const Sampling sampling = entry_of(format).sampling;
  const uint32_t across = sampling.bits == 8 ? sampling.across : kSamplesAGroup;
  return {wanted.width / across * across, wanted.height / sampling.down * sampling.down};
}

std::vector<uint8_t> encode_picture(const Picture& picture, PixelFormat format) {
  constexpr auto kRed = &Rgb16::red;
  constexpr auto kGreen = &Rgb16::green;
  constexpr auto kBlue = &Rgb16::blue;
  switch (format) {
    case PixelFormat::kRgba:
      return pack<3>(picture, {kRed, kGreen, kBlue}, true);
    case PixelFormat::kRgb:
      return pack<3>(picture, {kRed, kGreen, kBlue}, false);
    case PixelFormat::kBgr:
      return pack<3>(picture, {kBlue, kGreen, kRed}, false);
    default:
      return pack_planes(picture, entry_of(format).sampling);
  }
}

}  // namespace board::screen
