// The exported functions: ioctl, open and open64 take the place of the C library's.
//
// A descriptor is the display device's when it refers to the same file as the node's stand-in in
// the board's folder, under whatever path it was opened. So duplicates, inherited and passed-on
// descriptors are recognised without following dup, fork, exec or close.
//
// ioctl does the work. The open functions are needed for what a kernel does at an open: fail, and
// make the opener DRM master. A program that opens by another call than these is treated as if it
// opened at its first ioctl. Nothing else is replaced: on a Linux system with udev, libdrm looks
// for the node with stat and opens it, whatever its device number.
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

#include "description/description.h"
#include "drm/device_file.h"
#include "drm/preload/dispatch.h"

namespace {

bool is_display_device(int descriptor) {
  struct stat given = {};
  struct stat node = {};
  if (::fstat(descriptor, &given) != 0 || !S_ISREG(given.st_mode)) return false;
  if (::stat(board::drm::node(board::board_folder()).c_str(), &node) != 0) return false;
  return given.st_dev == node.st_dev && given.st_ino == node.st_ino;
}

// Leaves errno as a system call does: untouched by what happened on the way to a success.
int answer(int result, int former_errno) {
  errno = result < 0 ? -result : former_errno;
  return result < 0 ? -1 : result;
}

int open_device_or_file(const char* path, int flags, va_list arguments) {
  const bool takes_mode = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  const mode_t mode = takes_mode ? va_arg(arguments, mode_t) : 0;
  const int former_errno = errno;
  const int descriptor = ::openat(AT_FDCWD, path, flags, mode);
  if (descriptor < 0 || (flags & O_PATH) != 0) return descriptor;
  const int result = is_display_device(descriptor) ? board::drm::handle_open(descriptor) : 0;
  if (result == 0) return answer(descriptor, former_errno);
  ::close(descriptor);
  return answer(result, former_errno);
}

}  // namespace

#define EXPORTED extern "C" __attribute__((visibility("default")))

// Variadic as declared in <sys/ioctl.h>; every request that exists takes at most one argument.
EXPORTED int ioctl(int descriptor, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);

  const int former_errno = errno;
  // Requests of other types, such as FIOCLEX, are the file system's business on a real node too.
  if (_IOC_TYPE(request) != board::drm::kDrmRequestType || !is_display_device(descriptor)) {
    errno = former_errno;
    return static_cast<int>(::syscall(SYS_ioctl, descriptor, request, argument));
  }
  return answer(board::drm::handle_ioctl(descriptor, request, argument), former_errno);
}

EXPORTED int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const int result = open_device_or_file(path, flags, arguments);
  va_end(arguments);
  return result;
}

EXPORTED int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const int result = open_device_or_file(path, flags, arguments);
  va_end(arguments);
  return result;
}
