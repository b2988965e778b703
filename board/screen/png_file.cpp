#include "screen/png_file.h"

#include <png.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "screen/pixel_format.h"

namespace board::screen {
namespace {

std::vector<char> encode_png(const Picture& picture) {
  const std::vector<uint8_t> bytes = encode_picture(picture, PixelFormat::kRgb);
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = picture.size.width;
  image.height = picture.size.height;
  image.format = PNG_FORMAT_RGB;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::vector<char> png(size);
  // Row stride 0: rows without gaps. No colour map.
  if (png_image_write_to_memory(&image, png.data(), &size, 0, bytes.data(), 0, nullptr) == 0) {
    throw std::runtime_error(std::string("cannot make a PNG: ") + &image.message[0]);
  }
  png.resize(size);
  return png;
}

}  // namespace

void write_png(const Picture& picture, const std::filesystem::path& file) {
  // Not libpng's own file writing: that removes the path after a failure, whatever it names.
  const std::vector<char> png = encode_png(picture);
  errno = 0;
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.write(png.data(), static_cast<std::streamsize>(png.size()));
  stream.close();
  if (!stream) {
    throw std::runtime_error("cannot write " + file.string() + ": " + std::strerror(errno));
  }
}

}  // namespace board::screen
