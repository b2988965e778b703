#include "files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <system_error>

namespace {

// Returns false with the reason in errno.
bool write_and_sync(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) return false;
    if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return fsync(descriptor) == 0;
}

}  // namespace

pqclient::Error file_error(const char* what, const std::filesystem::path& path) {
  return {pqclient::ErrorKind::kFile, std::string("cannot ") + what + " " + path.string() + ": " +
                                          std::generic_category().message(errno)};
}

void replace_file(const std::filesystem::path& path, std::string_view bytes) {
  std::string side = path.string() + ".XXXXXX";
  const int descriptor = mkostemp(side.data(), O_CLOEXEC);
  if (descriptor < 0) throw file_error("write", path);
  const mode_t mask = umask(0);  // the only way to read it
  umask(mask);
  (void)fchmod(descriptor, 0666 & ~mask);
  const bool is_written = write_and_sync(descriptor, bytes);
  const bool is_closed = close(descriptor) == 0;
  if (is_written && is_closed && rename(side.c_str(), path.c_str()) == 0) return;
  const int reason = errno;
  unlink(side.c_str());
  errno = reason;
  throw file_error("write", path);
}

std::string read_input(const std::string& path) {
  if (path == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  try {
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) throw file_error("read", path);
    return {std::istreambuf_iterator<char>(file), {}};
  } catch (const std::ios_base::failure&) {  // the read itself failed: a folder, a broken disk
    throw file_error("read", path);
  }
}

void write_output(const std::string& path, std::string_view bytes) {
  const auto size = static_cast<std::streamsize>(bytes.size());
  if (path == "-") {
    std::cout.write(bytes.data(), size);  // main() checks the stream
    return;
  }
  std::ofstream file(path, std::ios::binary);
  if (!file.write(bytes.data(), size).flush()) throw file_error("write", path);
}
