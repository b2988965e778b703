// libboardspace.so: preloaded into the program under test. Its statvfs answers with the size of the
// board's own /data and what is free of it, not with this machine's: a board is no fuller because
// the machine is. The two numbers stand in the board's folder (data_space, in MiB) and may be
// changed while the board runs.
//
// Allocates nothing: the tests that let allocations fail call it, too.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr unsigned long kBlock = 4096;
constexpr unsigned long kBlocksPerMib = 1024 * 1024 / kBlock;

bool read_space(unsigned long& size, unsigned long& free) {
  const char* folder = std::getenv("BOARD_DIR");
  std::array<char, 4096> path{};
  std::snprintf(path.data(), path.size(), "%s/data_space", folder != nullptr ? folder : "/board");
  // Past the display device's open.
  const int file =
      static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path.data(), O_RDONLY | O_CLOEXEC));
  if (file < 0) return false;
  std::array<char, 64> text{};
  const ssize_t length = ::read(file, text.data(), text.size() - 1);
  ::close(file);
  return length > 0 && std::sscanf(text.data(), "%lu %lu", &size, &free) == 2;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int statvfs(const char* path,
                                                              struct statvfs* result) noexcept {
  unsigned long size = 0;
  unsigned long free = 0;
  if (std::strcmp(path, "/data") != 0 || !read_space(size, free)) {
    using Statvfs = int (*)(const char*, struct statvfs*);
    static const auto next = reinterpret_cast<Statvfs>(dlsym(RTLD_NEXT, "statvfs"));
    return next(path, result);
  }
  *result = {};
  result->f_bsize = result->f_frsize = kBlock;
  result->f_blocks = size * kBlocksPerMib;
  result->f_bfree = result->f_bavail = free * kBlocksPerMib;
  return 0;
}
