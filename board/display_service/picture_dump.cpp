#include "display_service/picture_dump.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "files/files.h"
#include "screen/pixel_format.h"

namespace board::screen {
namespace {

Picture cut(const Picture& picture, Size size) {
  Picture part(size);
  for (uint32_t y = 0; y < size.height; ++y) {
    std::copy_n(picture.row(y).begin(), size.width, part.row(y).begin());
  }
  return part;
}

std::string text_of(Size size) {
  return std::to_string(size.width) + "x" + std::to_string(size.height);
}

}  // namespace

std::filesystem::path write_dump(const Picture& picture, DumpSide side,
                                 const Description& description,
                                 const std::filesystem::path& folder) {
  const bool input = side == DumpSide::kInput;
  const std::string& name = input ? description.dump_format_in : description.dump_format_out;
  const auto format = parse_pixel_format(name);
  if (!format)
    throw std::runtime_error("the board's description asks for the unknown format " + name);
  const Size size = fitting_size(*format, picture.size);
  if (size.width == 0 || size.height == 0) {
    throw std::runtime_error(name + " cannot hold a picture of " + text_of(picture.size));
  }
  std::filesystem::path file =
      folder / ((input ? "pq_dump_in_" : "pq_dump_out_") + text_of(size) + "." + name);
  const auto bytes = size == picture.size ? encode_picture(picture, *format)
                                          : encode_picture(cut(picture, size), *format);
  replace_file_or_throw(
      file, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  return file;
}

}  // namespace board::screen
