#include "documents/side_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "base/log.h"
#include "base/owner.h"
#include "documents/read_error.h"

namespace pq {
namespace {

bool write_all(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(fd, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

// The name of a new file is safe only when its folder is.
void sync_folder(const char* folder) {
  const UniqueFd fd(open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (fd.valid()) fsync(fd.get());
}

bool write_new_file(const char* path, const char* text) {
  // Neither through a link, nor waiting for a reader of a pipe.
  constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  constexpr mode_t kMode = 0600;
  const UniqueFd fd(open(path, kFlags, kMode));
  return fd.valid() && write_all(fd.get(), text) && fsync(fd.get()) == 0;
}

}  // namespace

SideFile::SideFile(const char* document) {
  const std::string_view whole(document);
  const size_t name = whole.rfind('/') + 1;
  folder_ = whole.substr(0, name);
  path_ = folder_ + "." + std::string(whole.substr(name)) + ".saving";
  look_up();
  if (!is_folder_) return;
  path_ += ".2";
  look_up();
}

void SideFile::look_up() {
  struct stat status {};
  exists_ = lstat(path_.c_str(), &status) == 0;
  is_folder_ = exists_ && S_ISDIR(status.st_mode);
  error_ = exists_ || means_no_readable_file(errno) ? 0 : errno;
}

bool SideFile::write(const char* text) {
  remove();  // what is no regular file would stay
  if (!write_new_file(path_.c_str(), text)) {
    log_error()("cannot write %s: %s; the document stays as it was", path(), std::strerror(errno));
    ::unlink(path());
    return false;
  }
  exists_ = true;
  sync_folder(folder_.c_str());
  return true;
}

void SideFile::remove() {
  if (exists_ && ::unlink(path()) == 0) exists_ = false;
}

}  // namespace pq
