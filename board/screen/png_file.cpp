#include "screen/png_file.h"

#include <png.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "screen/pixel_format.h"

namespace board {

void write_png(const Picture& picture, const std::filesystem::path& file) {
  const std::vector<uint8_t> bytes = encode_picture(picture, PixelFormat::kRgb);
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = picture.size.width;
  image.height = picture.size.height;
  image.format = PNG_FORMAT_RGB;
  // Row stride 0: rows without gaps. No colour map.
  if (png_image_write_to_file(&image, file.c_str(), 0, bytes.data(), 0, nullptr) == 0) {
    throw std::runtime_error("cannot write " + file.string() + ": " + std::string(image.message));
  }
}

}  // namespace board
