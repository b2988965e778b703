#include "qxaiq/document_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "qxaiq/log_source.h"

namespace pq {
namespace {

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

// The name of a new file is safe only when its folder is.
void sync_folder_of(std::string_view file) {
  const std::string folder(file.substr(0, file.rfind('/') + 1));
  const UniqueFd fd(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (fd.valid()) fsync(fd.get());
}

bool write_side_file(const std::string& path, std::string_view text) {
  constexpr mode_t kMode = 0600;
  const UniqueFd fd(
      open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, kMode));
  if (!fd.valid() || !write_all(fd.get(), text) || fsync(fd.get()) != 0) {
    kProtocolLog.error()("cannot write %s: %s; the document stays as it was", path.c_str(),
                         std::strerror(errno));
    return false;
  }
  sync_folder_of(path);
  return true;
}

}  // namespace

TextPtr read_document_text(const char* path) {
  size_t size = 0;
  return TextPtr(j2s_read_file(path, &size));
}

JsonPtr read_document(const char* path) {
  const TextPtr text = read_document_text(path);
  return text ? parse_json(text.get()) : nullptr;
}

int save_document(const char* path, const char* text) {
  if (text == nullptr || text[0] == '\0') return -1;
  const std::string side = side_file(path);
  if (!write_side_file(side, text)) {
    unlink(side.c_str());
    return -1;
  }
  const int result = j2s_save_file(path, text);
  if (result >= 0) unlink(side.c_str());
  return result;
}

void restore_document(const char* path) {
  const std::string side = side_file(path);
  struct stat side_status {};
  if (lstat(side.c_str(), &side_status) != 0) return;
  if (access(path, F_OK) == 0 && !read_document(path)) {
    const TextPtr text = read_document_text(side.c_str());
    if (text && parse_json(text.get())) {
      const int result = j2s_save_file(path, text.get());
      kProtocolLog.error()("%s was cut short while it was saved, restored: %d", path, result);
      if (result < 0) return;  // the side file is still all there is
    }
  }
  unlink(side.c_str());
}

}  // namespace pq
