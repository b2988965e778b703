#include "display_service/property_folder.h"

#include <fstream>
#include <iterator>

#include "screen/atomic_file.h"

namespace board::screen {

std::string PropertyFolder::get(const std::string& name) const {
  std::ifstream stream(folder_ / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void PropertyFolder::set(const std::string& name, std::string_view value) const {
  write_file_atomically(folder_ / name, value);
}

}  // namespace board::screen
