#include "files.h"

#include <cerrno>
#include <fstream>
#include <iostream>
#include <iterator>
#include <system_error>

#include "pqclient/error.h"

namespace {

pqclient::Error file_error(const char* what, const std::string& path) {
  return {pqclient::ErrorKind::kFile, std::string("cannot ") + what + " " + path + ": " +
                                          std::generic_category().message(errno)};
}

}  // namespace

std::string read_input(const std::string& path) {
  if (path == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  std::ifstream file(path, std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(file), {});
  if (!file.is_open() || file.bad()) throw file_error("read", path);
  return text;
}

void write_output(const std::string& path, std::string_view bytes) {
  const auto size = static_cast<std::streamsize>(bytes.size());
  if (path == "-") {
    std::cout.write(bytes.data(), size);  // main() sees to it whether that went well
    return;
  }
  std::ofstream file(path, std::ios::binary);
  if (!file.write(bytes.data(), size).flush()) throw file_error("write", path);
}
