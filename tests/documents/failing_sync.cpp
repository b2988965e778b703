#include "documents/failing_sync.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace {

std::string failing_path;

}  // namespace

FailingSync::FailingSync(const std::string& path) {
  failing_path = path;
}
FailingSync::~FailingSync() {
  failing_path.clear();
}

// Replaces the C library's function in this whole program.
extern "C" int fsync(int fd) {
  std::error_code unreadable;
  const auto path =
      std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(fd), unreadable);
  if (!failing_path.empty() && path == failing_path) {
    errno = EIO;
    return -1;
  }
  return static_cast<int>(syscall(SYS_fsync, fd));
}
