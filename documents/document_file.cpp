#include "documents/document_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <system_error>

#include "base/log.h"
#include "j2s/files.h"

namespace pq {
namespace {

[[noreturn]] void throw_read_fault(int error, const char* path) {
  if (error == ENOMEM) throw std::bad_alloc();
  throw std::system_error(error, std::generic_category(), std::string("cannot read ") + path);
}

// Whether an error says that there is no file which we may read, now and in a second as well.
bool speaks_of_file(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
    case EISDIR:
    case ENODEV:
    case EACCES:
    case EPERM:
    case ELOOP:
    case ENAMETOOLONG:
      return true;
    default:
      return false;
  }
}

// Null when there is no file to read. Throws when reading failed for another reason: nothing is
// known of what is stored then, and whoever took it for nothing would store zeros in its place.
TextPtr read_text(const char* path) {
  size_t size = 0;
  TextPtr text(j2s::read_file(path, &size).release());
  if (!text && !speaks_of_file(errno)) throw_read_fault(errno, path);
  return text;
}

bool holds_json(const char* path) {
  const TextPtr text = read_text(path);
  return text && parse_json(text.get());
}

// With AT_SYMLINK_NOFOLLOW a link counts even when it leads nowhere.
bool exists(const char* path, int flags = 0) {
  struct stat status {};
  if (fstatat(AT_FDCWD, path, &status, flags) == 0) return true;
  if (!speaks_of_file(errno)) throw_read_fault(errno, path);
  return false;
}

// ".pq_config.json.saving" beside "pq_config.json".
std::string side_file(std::string_view document) {
  const size_t name = document.rfind('/') + 1;
  return std::string(document.substr(0, name)) + "." + std::string(document.substr(name)) +
         ".saving";
}

bool write_all(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(fd, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

std::string folder_of(std::string_view file) {
  return std::string(file.substr(0, file.rfind('/') + 1));
}

// The name of a new file is safe only when its folder is.
void sync_folder(const std::string& folder) {
  const UniqueFd fd(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (fd.valid()) fsync(fd.get());
}

bool write_side_file(const std::string& path, std::string_view text) {
  // Neither through a link, nor waiting for a reader of a pipe.
  constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  constexpr mode_t kMode = 0600;
  const std::string folder = folder_of(path);  // now: memory may run out as long as nothing is done
  const UniqueFd fd(open(path.c_str(), kFlags, kMode));
  if (!fd.valid() || !write_all(fd.get(), text) || fsync(fd.get()) != 0) {
    log_error()("cannot write %s: %s; the document stays as it was", path.c_str(),
                std::strerror(errno));
    return false;
  }
  sync_folder(folder);
  return true;
}

}  // namespace

TextPtr read_document_text(const char* path) {
  return restore_document(path) ? read_text(path) : read_text(side_file(path).c_str());
}

JsonPtr read_document(const char* path) {
  const TextPtr text = read_document_text(path);
  return text ? parse_shallow(text.get()) : nullptr;
}

int save_document(const char* path, const char* text) {
  if (text == nullptr || text[0] == '\0') return -1;
  const std::string side = side_file(path);
  if (!restore_document(path)) return -1;
  if (!write_side_file(side, text)) {
    unlink(side.c_str());
    return -1;
  }
  const int result = j2s_save_file(path, text);
  if (result >= 0) unlink(side.c_str());
  return result;
}

bool restore_document(const char* path) {
  const std::string side = side_file(path);
  if (!exists(side.c_str(), AT_SYMLINK_NOFOLLOW)) return true;
  if (exists(path) && !holds_json(path)) {
    const TextPtr text = read_text(side.c_str());
    if (text && parse_json(text.get())) {
      const int result = j2s_save_file(path, text.get());
      log_error()("%s was cut short while it was saved, restored: %d", path, result);
      if (result < 0) return false;
    }
  }
  unlink(side.c_str());
  return true;
}

}  // namespace pq
