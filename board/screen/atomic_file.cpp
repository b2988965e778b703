#include "screen/atomic_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace board::screen {
namespace {

// Two processes may write one file at once; each needs a side file of its own.
std::filesystem::path side_file(const std::filesystem::path& file) {
  return file.parent_path() / ("." + file.filename().string() + "." + std::to_string(getpid()));
}

bool write_file(const std::filesystem::path& file, std::string_view content) {
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  stream.close();
  return static_cast<bool>(stream);
}

}  // namespace

void write_file_atomically(const std::filesystem::path& file, std::string_view content) {
  const std::filesystem::path side = side_file(file);
  std::error_code error;
  errno = 0;
  if (write_file(side, content)) {
    std::filesystem::rename(side, file, error);
    if (!error) return;
  } else {
    error.assign(errno, std::generic_category());
  }
  std::error_code ignored;  // the first failure is the one to tell
  std::filesystem::remove(side, ignored);
  throw std::runtime_error("cannot write " + file.string() + ": " + error.message());
}

void write_file_atomically(const std::filesystem::path& file, std::span<const uint8_t> content) {
  write_file_atomically(
      file, std::string_view(reinterpret_cast<const char*>(content.data()), content.size()));
}

}  // namespace board::screen
