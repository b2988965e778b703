#include "j2s/files.h"

#include <fcntl.h>

#include <cerrno>
#include <climits>
#include <cstring>

#include "j2s/j2s_utils.h"
#include "j2s/report.h"

namespace j2s {
namespace {

Origin read_file_origin(int line = __builtin_LINE()) {
  return {Origin::Source::kUtilities, "j2s_read_file", line};
}

// A directory passes: it opens like a file, and the read then says what is wrong.
bool is_readable_kind(const struct stat& status) {
  if (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)) return true;
  errno = ENODEV;
  return false;
}

// Not valid after a message.
pq::UniqueFd open_existing(const char* path, struct stat& status) {
  if (path == nullptr || stat(path, &status) != 0) {
    report_error(read_file_origin(), "no such file: '%s'", path ? path : "<null>");
    return {};
  }
  // Tested before opening too: opening some devices has an effect.
  if (!is_readable_kind(status)) {
    report_error(read_file_origin(), "failed to open: '%s'", path);
    return {};
  }
  return open_for_reading(path, 0, status);
}

// Room for the file and a terminating 0; null after a message.
pq::TextPtr allocate_for(const struct stat& status) {
  pq::TextPtr buffer(static_cast<char*>(std::malloc(static_cast<size_t>(status.st_size) + 1)));
  if (buffer == nullptr) report_assertion(read_file_origin(), "buf");
  return buffer;
}

// Reads into `buffer`; frees it after a message when that fails.
pq::TextPtr read_into(pq::TextPtr buffer, const pq::UniqueFd& file, const char* path,
                      const struct stat& status) {
  const auto size = static_cast<size_t>(status.st_size);
  const ssize_t length = read(file.get(), buffer.get(), size);
  if (length != status.st_size) {
    if (length >= 0) errno = EIO;
    report_error(read_file_origin(), "failed to read: '%s'", path);
    return nullptr;
  }
  buffer.get()[size] = '\0';
  return buffer;
}

}  // namespace

pq::UniqueFd open_for_reading(const char* path, int extra_flags, struct stat& status) {
  pq::UniqueFd file(open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | extra_flags));
  if (file.valid() && fstat(file.get(), &status) == 0 && is_readable_kind(status)) {
    return file;
  }
  report_error(read_file_origin(), "failed to open: '%s'", path);
  return {};
}

pq::TextPtr read_opened(const pq::UniqueFd& file, const char* path, const struct stat& status) {
  pq::TextPtr buffer = allocate_for(status);
  return buffer == nullptr ? nullptr : read_into(std::move(buffer), file, path, status);
}

pq::TextPtr read_file(const char* path, size_t* size) {
  struct stat status = {};
  const pq::UniqueFd file = open_existing(path, status);
  if (!file.valid()) return nullptr;
  pq::TextPtr buffer = read_opened(file, path, status);
  if (buffer != nullptr && size != nullptr) *size = static_cast<size_t>(status.st_size);
  return buffer;
}

}  // namespace j2s

char* j2s_read_file(const char* path, size_t* size) {
  struct stat status = {};
  pq::UniqueFd file = j2s::open_existing(path, status);
  if (!file.valid()) return nullptr;
  pq::TextPtr buffer = j2s::allocate_for(status);
  if (buffer == nullptr) {
    (void)file.release();  // kept: part of the interface, on this path alone
    return nullptr;
  }
  buffer = j2s::read_into(std::move(buffer), file, path, status);
  if (buffer != nullptr && size != nullptr) *size = static_cast<size_t>(status.st_size);
  return buffer.release();
}

int j2s_save_file(const char* path, const char* text) {
  if (path == nullptr || text == nullptr) return -1;
  // O_NONBLOCK: does not wait for the reader of a pipe.
  constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC;
  const pq::UniqueFd file(open(path, kFlags, 0666));
  if (!file.valid()) return -1;
  const size_t length = std::strlen(text);
  (void)lseek(file.get(), 0, SEEK_SET);
  const ssize_t written = write(file.get(), text, length);
  // The results of fsync and close do not change ours: the bytes were accepted.
  (void)fsync(file.get());
  const bool complete = written >= 0 && static_cast<size_t>(written) == length && length <= INT_MAX;
  return complete ? static_cast<int>(written) : -1;
}
