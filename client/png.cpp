#include "pqclient/png.h"

#include <png.h>

#include <string>

#include "pqclient/error.h"

namespace pqclient {

Bytes encode_png(const Picture& picture) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(picture.width);
  image.height = static_cast<png_uint_32>(picture.height);
  image.format = PNG_FORMAT_RGB;
  // Space for any picture, compressed or not, so that one pass is enough.
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  Bytes file(size);
  if (png_image_write_to_memory(&image, file.data(), &size, 0, picture.rgb.data(), 0, nullptr) ==
      0) {
    throw Error(ErrorKind::kFile, std::string("cannot make a PNG file: ") + image.message);
  }
  file.resize(size);
  return file;
}

}  // namespace pqclient
