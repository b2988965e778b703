// The seven layouts of a picture dump.
#ifndef BOARD_SCREEN_PIXEL_FORMAT_H_
#define BOARD_SCREEN_PIXEL_FORMAT_H_

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "screen/picture.h"

namespace board::screen {

// Rows from the top, without padding. The packed ones are 8 bits a channel, bytes in the order of
// their name. The others are Y'CbCr of BT.709 in limited range (luma 16..235, chroma 16..240 at 8
// bits): a plane of luma, then a plane of Cb and Cr by turns; each chroma sample is the mean of the
// pixels that it stands for.
enum class PixelFormat {
  kRgba,  // alpha is 255
  kBgr,
  kNv12,  // chroma of 2x2 pixels
  kNv16,  // chroma of 2x1 pixels
  kNv24,  // chroma of each pixel
  kNv15,  // as nv12 with 10 bits a sample: four samples in five bytes, low bits first
  kRgb,
};

std::optional<PixelFormat> parse_pixel_format(std::string_view name);
std::string_view name_of(PixelFormat format);

// The largest size within `wanted` that the format can hold whole: nv12 and nv16 need an even
// width, nv15 one that is a multiple of 4, nv12 and nv15 an even height.
Size fitting_size(PixelFormat format, Size wanted);

// The dump's bytes. picture.size must be a fitting one.
std::vector<uint8_t> encode_picture(const Picture& picture, PixelFormat format);

}  // namespace board::screen

#endif  // BOARD_SCREEN_PIXEL_FORMAT_H_
