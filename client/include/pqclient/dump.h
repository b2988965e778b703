// A picture dump as received, and its conversion to an ordinary picture.
// No I/O here; any thread may call.
#ifndef PQCLIENT_DUMP_H_
#define PQCLIENT_DUMP_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "pqclient/packets.h"

namespace pqclient {

// In memory order, lines without padding. The codes are those of the dump's header.
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

// 8 bits each of red, green and blue, rows from top to bottom.
struct Picture {
  int width = 0;
  int height = 0;
  Bytes rgb;  // 3 * width * height
};

// The relation of luma and chroma to colours. The dump does not contain it.
struct ColourCoding {
  enum class Matrix { kBt601, kBt709, kBt2020 };  // Recommendations ITU-R BT.601, BT.709, BT.2020
  // Limited: luma 16 to 235 and chroma 16 to 240 in 8 bits, four times that in 10 bits, no chroma
  // at 128. Full: all codes; no chroma at the middle one.
  enum class Range { kLimited, kFull };
  Matrix matrix = Matrix::kBt709;
  Range range = Range::kLimited;
};

std::string_view format_name(DumpFormat format);  // "nv12"

// Size of a dump in bytes. Odd sizes are rounded up to whole chroma samples and whole bytes.
std::size_t dump_size(int width, int height, DumpFormat format);

// An empty dump with space for the data that follow the header.
// Throws Error kBadAnswer for an unknown format, a zero width or height, or over half a gigabyte.
Dump start_dump(const DumpHeader& header);

// Chroma is not interpolated: a sample colours all its pixels. BT.2020 keeps its own primaries.
// Alpha is dropped; dumps in red, green and blue ignore the coding.
// The dump must contain dump_size() bytes, otherwise throws Error kBadAnswer.
Picture decode(const Dump& dump, const ColourCoding& coding = {});

}  // namespace pqclient

#endif  // PQCLIENT_DUMP_H_
