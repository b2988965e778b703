// System calls: files, sockets, processes and threads. Waits take no time, and no child is started.
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <ctime>

#include "faults/captured_reply.h"
#include "faults/fault.h"

using faults::Call;
using faults::strike;

namespace {

// True if the call must fail; errno is then set.
bool fails(Call call) {
  const int error = strike(call);
  if (error == 0) return false;
  errno = error;
  return true;
}

// The number of bytes that a transferring call may move; -1 with errno set if it must fail.
ssize_t allowed(Call call, size_t size) {
  const int error = strike(call);
  if (error == faults::kShort) return static_cast<ssize_t>(size / 2);
  if (error == 0) return static_cast<ssize_t>(size);
  errno = error;
  return -1;
}

}  // namespace

// One call per line that fails or is passed on: its parameters, and how they are passed.
#define WRAPPED(call, result, name, parameters, arguments) \
  result __real_##name parameters;                         \
  result __wrap_##name parameters {                        \
    return fails(call) ? -1 : __real_##name arguments;     \
  }

extern "C" {

WRAPPED(Call::kStatus, int, stat, (const char* path, struct stat* status), (path, status))
WRAPPED(Call::kStatus, int, lstat, (const char* path, struct stat* status), (path, status))
WRAPPED(Call::kStatus, int, fstat, (int file, struct stat* status), (file, status))
WRAPPED(Call::kStatus, int, access, (const char* path, int mode), (path, mode))
WRAPPED(Call::kOpen, int, flock, (int file, int operation), (file, operation))
WRAPPED(Call::kSeek, off_t, lseek, (int file, off_t offset, int from), (file, offset, from))
WRAPPED(Call::kRemove, int, unlink, (const char* path), (path))
WRAPPED(Call::kRemove, int, rename, (const char* path, const char* other), (path, other))
WRAPPED(Call::kRemove, int, remove, (const char* path), (path))
WRAPPED(Call::kReceive, ssize_t, recvfrom,
        (int socket, void* bytes, size_t size, int flags, sockaddr* from, socklen_t* length),
        (socket, bytes, size, flags, from, length))
WRAPPED(Call::kAccept, int, accept4, (int socket, sockaddr* from, socklen_t* length, int flags),
        (socket, from, length, flags))
WRAPPED(Call::kSocket, int, socket, (int family, int type, int protocol), (family, type, protocol))
WRAPPED(Call::kSocket, int, bind, (int socket, const sockaddr* address, socklen_t length),
        (socket, address, length))
WRAPPED(Call::kSocket, int, listen, (int socket, int backlog), (socket, backlog))

int __real_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  if (fails(Call::kOpen)) return -1;
  const faults::Exempt exempt;  // the simulated display device inspects the opened file
  return __real_open(path, flags, mode);
}
// The name in fortified programs.
int __wrap___open_2(const char* path, int flags) {
  return __wrap_open(path, flags);
}

ssize_t __real_read(int file, void* bytes, size_t size);
ssize_t __wrap_read(int file, void* bytes, size_t size) {
  const ssize_t most = allowed(Call::kRead, size);
  return most < 0 ? -1 : __real_read(file, bytes, static_cast<size_t>(most));
}
ssize_t __wrap___read_chk(int file, void* bytes, size_t size, size_t /*room*/) {
  return __wrap_read(file, bytes, size);
}

ssize_t __real_write(int file, const void* bytes, size_t size);
ssize_t __wrap_write(int file, const void* bytes, size_t size) {
  const ssize_t most = allowed(Call::kWrite, size);
  return most < 0 ? -1 : __real_write(file, bytes, static_cast<size_t>(most));
}
ssize_t __real_writev(int file, const iovec* pieces, int count);
ssize_t __wrap_writev(int file, const iovec* pieces, int count) {
  const ssize_t most = allowed(Call::kWrite, static_cast<size_t>(count));
  return most < 0 ? -1 : __real_writev(file, pieces, static_cast<int>(most));
}

// Not passed on: nothing here must survive a power loss.
int __wrap_fsync(int /*file*/) {
  return fails(Call::kSync) ? -1 : 0;
}

// As on Linux, a failed close still frees the descriptor.
int __real_close(int file);
int __wrap_close(int file) {
  const int result = __real_close(file);
  return fails(Call::kClose) ? -1 : result;
}

ssize_t __real_sendto(int socket, const void* bytes, size_t size, int flags, const sockaddr* to,
                      socklen_t length);
ssize_t __wrap_sendto(int socket, const void* bytes, size_t size, int flags, const sockaddr* to,
                      socklen_t length) {
  const ssize_t most = allowed(Call::kSend, size);
  if (most < 0) return -1;
  if (socket == faults::kCaptured) return faults::capture(bytes, static_cast<size_t>(most));
  return __real_sendto(socket, bytes, static_cast<size_t>(most), flags, to, length);
}

// The server's receive time-outs are seconds, and each stop would wait for one.
int __real_setsockopt(int socket, int level, int option, const void* value, socklen_t length);
int __wrap_setsockopt(int socket, int level, int option, const void* value, socklen_t length) {
  if (fails(Call::kSocketOption)) return -1;
  const timeval brief{0, 20'000};
  if (option == SO_RCVTIMEO && !faults::is_exempt()) value = &brief;
  return __real_setsockopt(socket, level, option, value, length);
}

// Starts no child, but the parent continues as if it had. No process has this number.
pid_t __wrap_fork() {
  constexpr pid_t kNobody = 0x7FFFFFF0;
  return fails(Call::kFork) ? -1 : kNobody;
}

int __wrap_clock_nanosleep(clockid_t /*clock*/, int /*flags*/, const timespec* /*time*/,
                           timespec* /*rest*/) {
  return 0;
}

// For std::thread, which calls it from within its library.
void* __real_dlsym(void* library, const char* name);
int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                   void* argument) {
  using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
  static const auto next = reinterpret_cast<Create>(__real_dlsym(RTLD_NEXT, "pthread_create"));
  const int error = strike(Call::kThread);
  return error != 0 ? error : next(thread, attributes, run, argument);
}

}  // extern "C"
