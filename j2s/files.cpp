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

// Reads into `buffer`. Returns 0, or after a message an error.
int read_into(char* buffer, const pq::UniqueFd& file, const char* path, const struct stat& status) {
  const ssize_t length = read(file.get(), buffer, static_cast<size_t>(status.st_size));
  if (length != status.st_size) {
    const int error = length < 0 ? errno : EIO;
    report_error(read_file_origin(), "failed to read: '%s'", path);
    return error;
  }
  buffer[length] = '\0';
  return 0;
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
  if (buffer == nullptr || read_into(buffer.get(), file, path, status) != 0) return nullptr;
  return buffer;
}

FileText read_file(const char* path, size_t max_size) {
  struct stat status = {};
  const pq::UniqueFd file = open_existing(path, status);
  if (!file.valid()) return {nullptr, errno};
  if (status.st_size < 0 || static_cast<size_t>(status.st_size) > max_size) {
    report_error(read_file_origin(), "failed to read: '%s'", path);
    return {nullptr, EFBIG};
  }
  FileText content{allocate_for(status)};
  if (content.text == nullptr) return {nullptr, ENOMEM};
  content.error = read_into(content.text.get(), file, path, status);
  if (content.error != 0) content.text.reset();
  return content;
}

FileSaved save_file(const char* path, const char* text) {
  // O_NONBLOCK: does not wait for the reader of a pipe.
  constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC;
  const pq::UniqueFd file(open(path, kFlags, 0666));
  if (!file.valid()) return {-1, errno};
  const size_t length = std::strlen(text);
  (void)lseek(file.get(), 0, SEEK_SET);
  const ssize_t written = write(file.get(), text, length);
  const int write_error = written < 0 ? errno : ENOSPC;
  const int sync_error = fsync(file.get()) == 0 ? 0 : errno;
  const bool complete = written >= 0 && static_cast<size_t>(written) == length && length <= INT_MAX;
  if (!complete) return {-1, write_error};
  return {static_cast<int>(written), sync_error};
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
  if (j2s::read_into(buffer.get(), file, path, status) != 0) return nullptr;
  if (size != nullptr) *size = static_cast<size_t>(status.st_size);
  return buffer.release();
}

int j2s_save_file(const char* path, const char* text) {
  if (path == nullptr || text == nullptr) return -1;
  // The results of fsync and close do not change ours: the bytes were accepted.
  return j2s::save_file(path, text).result;
}
