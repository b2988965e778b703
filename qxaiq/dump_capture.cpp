#include "qxaiq/dump_capture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "base/owner.h"
#include "documents/names.h"

namespace {

constexpr std::array<std::string_view, 2> kPrefixes = {pq::kInputDumpPrefix, pq::kOutputDumpPrefix};

// By code.
constexpr std::array<std::string_view, 7> kFormatNames = {"rgba", "bgr",  "nv12", "nv16",
                                                          "nv24", "nv15", "rgb"};
static_assert(kFormatNames[static_cast<size_t>(PixelFormat::kNv15)] == "nv15");
static_assert(kFormatNames[static_cast<size_t>(PixelFormat::kRgb)] == "rgb");

// The rest after the prefix. The path comes from a property that other processes write. It must not
// lead to any file but the dumps in their folder, since that file is sent and deleted.
std::optional<std::string_view> dump_name(std::string_view path) {
  for (const std::string_view prefix : kPrefixes) {
    if (!path.starts_with(prefix)) continue;
    const std::string_view name = path.substr(prefix.size());
    if (name.find('/') == std::string_view::npos) return name;
  }
  return std::nullopt;
}

// The next piece of `rest` up to `delimiter`, leading delimiters skipped; empty when there is none.
std::string_view next_token(std::string_view& rest, char delimiter) {
  rest.remove_prefix(std::min(rest.find_first_not_of(delimiter), rest.size()));
  const std::string_view token = rest.substr(0, rest.find(delimiter));
  rest.remove_prefix(std::min(token.size() + 1, rest.size()));
  return token;
}

// As atoi, but defined for numbers of any size.
int to_int(std::string_view text) {
  const long value = std::strtol(std::string(text).c_str(), nullptr, 10);
  return static_cast<int>(std::clamp<long>(value, INT32_MIN, INT32_MAX));
}

// The whole file, zero-filled where it turned out shorter than it said.
pq::TextPtr read_whole(int fd, size_t size) {
  pq::TextPtr bytes(static_cast<char*>(std::calloc(size + 1, 1)));
  if (!bytes || read(fd, bytes.get(), size) < 0) return nullptr;
  return bytes;
}

// Dumps of one size and format share a name: the display service may have put the next one there
// while this one was read.
bool is_same_file(const char* path, const struct stat& read_file) {
  struct stat status {};
  return lstat(path, &status) == 0 && status.st_dev == read_file.st_dev &&
         status.st_ino == read_file.st_ino;
}

}  // namespace

int get_dump_info(char* path, int* width, int* height, int* format) {
  if (access(path, F_OK) != 0) return -2;
  std::optional<std::string_view> rest = dump_name(path);
  if (!rest) return -1;
  const std::string_view width_text = next_token(*rest, 'x');
  const std::string_view height_text = next_token(*rest, '.');
  const std::string_view format_name = next_token(*rest, '.');
  if (width_text.empty() || height_text.empty() || format_name.empty()) return -1;
  *width = to_int(width_text);
  *height = to_int(height_text);
  for (size_t code = 0; code < kFormatNames.size(); ++code) {
    if (kFormatNames[code] == format_name) {
      *format = static_cast<int>(code);
      return 0;
    }
  }
  return -1;
}

char* getPqDumpData(char* path, unsigned long* size) {
  // For writing too, although nothing is written: a file that we may not change we may not delete.
  const pq::UniqueFd fd(open(path, O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (!fd.valid() || fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
  const auto byte_count = static_cast<size_t>(status.st_size);
  pq::TextPtr bytes = read_whole(fd.get(), byte_count);
  if (!bytes) return nullptr;
  *size = byte_count;
  if (is_same_file(path, status)) std::remove(path);
  return bytes.release();
}
