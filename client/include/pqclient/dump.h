// A picture dump as it arrives, and how to make an ordinary picture of it.
// No I/O here; any thread may call.
#ifndef PQCLIENT_DUMP_H_
#define PQCLIENT_DUMP_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "pqclient/packets.h"

namespace pqclient {

// In memory order, lines without padding. The codes are those of the dump's head.
enum class DumpFormat : std::uint8_t {
  kRgba = 0,  // 8 bits each: red, green, blue, alpha
  kBgr = 1,   // 8 bits each: blue, green, red
  kNv12 = 2,  // plane of luma, then Cb and Cr in turn for every 2x2 pixels; 8 bits
  kNv16 = 3,  // the same, for every 2x1 pixels
  kNv24 = 4,  // the same, for every pixel
  kNv15 = 5,  // as NV12 with 10 bits, packed from the lowest bit up: 4 samples in 5 bytes
  kRgb = 6,   // 8 bits each: red, green, blue
};

struct Dump {
  int width = 0;   // pixels
  int height = 0;  // lines
  DumpFormat format = DumpFormat::kRgba;
  Bytes data;  // dump_size() bytes
};

// 8 bits each of red, green and blue, rows from the top.
struct Picture {
  int width = 0;
  int height = 0;
  Bytes rgb;  // 3 * width * height
};

// How luma and chroma stand for colours. A dump does not say it.
struct ColourCoding {
  enum class Matrix { kBt601, kBt709, kBt2020 };  // Recommendations ITU-R BT.601, BT.709, BT.2020
  // Limited: luma 16 to 235 and chroma 16 to 240 in 8 bits, four times that in 10 bits, no chroma
  // at 128. Full: all codes; no chroma at the middle one.
  enum class Range { kLimited, kFull };
  Matrix matrix = Matrix::kBt709;
  Range range = Range::kLimited;
};

std::string_view format_name(DumpFormat format);  // "nv12"

// Bytes of a dump. Odd sizes are rounded up to whole chroma samples and whole bytes.
std::size_t dump_size(int width, int height, DumpFormat format);

// An empty dump with room for the data that follow the head.
// Throws Error kBadAnswer for an unknown format, no width or height, or over half a gigabyte.
Dump start_dump(const DumpHeader& header);

// Chroma is not interpolated: a sample colours all its pixels. BT.2020 stays in its own primaries.
// Alpha is dropped; of dumps in red, green and blue the coding plays no part.
// The dump must hold dump_size() bytes, else Error kBadAnswer.
Picture decode(const Dump& dump, const ColourCoding& coding = {});

}  // namespace pqclient

#endif  // PQCLIENT_DUMP_H_
