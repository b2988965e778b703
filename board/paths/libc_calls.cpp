// libboardpaths.so: preloaded where no private root can be made. It stands before the C library and
// hands each call on with the board's absolute paths mapped into the state folder.
//
// Only calls that take a path are here. What the C library calls inside itself does not come by, so
// each member of a family (open, open64, the checked __open_2 of fortified programs) is needed.
//
// The first use of a call looks the C library's own up, which takes the loader's lock; so that a
// forked child of a threaded process never does, all are looked up when the library is loaded.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>

#include "paths/mapped_path.h"

namespace {

using board::MappedPath;

// The definition of a function that comes after ours.
template <typename Result, typename... Arguments>
class Next {
 public:
  explicit constexpr Next(const char* name) : name_(name) {}

  Result operator()(Arguments... arguments) { return look_up()(arguments...); }

  Result (*look_up())(Arguments...) {
    void* function = function_.load(std::memory_order_relaxed);
    if (function == nullptr) {
      function = ::dlsym(RTLD_NEXT, name_);
      function_.store(function, std::memory_order_relaxed);
    }
    return reinterpret_cast<Result (*)(Arguments...)>(function);
  }

 private:
  const char* name_;
  std::atomic<void*> function_{nullptr};
};

constinit Next<int, int, const char*, int, mode_t> next_openat("openat");
constinit Next<FILE*, const char*, const char*> next_fopen("fopen");
constinit Next<DIR*, const char*> next_opendir("opendir");
constinit Next<int, int, const char*, struct stat*, int> next_fstatat("fstatat");
constinit Next<int, const char*, int> next_access("access");
constinit Next<int, const char*> next_remove("remove");
constinit Next<int, int, const char*, int> next_unlinkat("unlinkat");
constinit Next<int, const char*, const char*> next_rename("rename");
constinit Next<int, const char*, mode_t> next_mkdir("mkdir");
constinit Next<int, const char*, mode_t> next_chmod("chmod");
constinit Next<int, const char*, char* const*, char* const*> next_execve("execve");

__attribute__((constructor)) void look_up_all() {
  (void)next_openat.look_up();
  (void)next_fopen.look_up();
  (void)next_opendir.look_up();
  (void)next_fstatat.look_up();
  (void)next_access.look_up();
  (void)next_remove.look_up();
  (void)next_unlinkat.look_up();
  (void)next_rename.look_up();
  (void)next_mkdir.look_up();
  (void)next_chmod.look_up();
  (void)next_execve.look_up();
}

// The mode is there only when a file may be made.
mode_t mode_argument(int flags, va_list arguments) {
  const bool present = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  return present ? va_arg(arguments, mode_t) : 0;
}

int open_mapped(int folder, const char* path, int flags, mode_t mode) {
  return next_openat(folder, MappedPath(path), flags, mode);
}

int stat_mapped(int folder, const char* path, struct stat* result, int flags) {
  return next_fstatat(folder, MappedPath(path), result, flags);
}

// On a 64-bit machine the two records are one.
struct stat* plain(struct stat64* result) {
  static_assert(sizeof(struct stat) == sizeof(struct stat64));
  return reinterpret_cast<struct stat*>(result);
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = mode_argument(flags, arguments);
  va_end(arguments);
  return open_mapped(AT_FDCWD, path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = mode_argument(flags, arguments);
  va_end(arguments);
  return open_mapped(AT_FDCWD, path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = mode_argument(flags, arguments);
  va_end(arguments);
  return open_mapped(folder, path, flags, mode);
}

int openat64(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = mode_argument(flags, arguments);
  va_end(arguments);
  return open_mapped(folder, path, flags, mode);
}

int __open_2(const char* path, int flags) {
  return open_mapped(AT_FDCWD, path, flags, 0);
}
int __open64_2(const char* path, int flags) {
  return open_mapped(AT_FDCWD, path, flags, 0);
}
int __openat_2(int folder, const char* path, int flags) {
  return open_mapped(folder, path, flags, 0);
}
int __openat64_2(int folder, const char* path, int flags) {
  return open_mapped(folder, path, flags, 0);
}

int creat(const char* path, mode_t mode) {
  return open_mapped(AT_FDCWD, path, O_WRONLY | O_CREAT | O_TRUNC, mode);
}
int creat64(const char* path, mode_t mode) {
  return open_mapped(AT_FDCWD, path, O_WRONLY | O_CREAT | O_TRUNC, mode);
}

FILE* fopen(const char* path, const char* mode) {
  return next_fopen(MappedPath(path), mode);
}
FILE* fopen64(const char* path, const char* mode) {
  return next_fopen(MappedPath(path), mode);
}
DIR* opendir(const char* path) {
  return next_opendir(MappedPath(path));
}

int stat(const char* path, struct stat* result) {
  return stat_mapped(AT_FDCWD, path, result, 0);
}
int stat64(const char* path, struct stat64* result) {
  return stat_mapped(AT_FDCWD, path, plain(result), 0);
}
int lstat(const char* path, struct stat* result) {
  return stat_mapped(AT_FDCWD, path, result, AT_SYMLINK_NOFOLLOW);
}
int lstat64(const char* path, struct stat64* result) {
  return stat_mapped(AT_FDCWD, path, plain(result), AT_SYMLINK_NOFOLLOW);
}
int fstatat(int folder, const char* path, struct stat* result, int flags) {
  return stat_mapped(folder, path, result, flags);
}
int fstatat64(int folder, const char* path, struct stat64* result, int flags) {
  return stat_mapped(folder, path, plain(result), flags);
}

int access(const char* path, int mode) {
  return next_access(MappedPath(path), mode);
}
int remove(const char* path) {
  return next_remove(MappedPath(path));
}
int unlink(const char* path) {
  return next_unlinkat(AT_FDCWD, MappedPath(path), 0);
}
int unlinkat(int folder, const char* path, int flags) {
  return next_unlinkat(folder, MappedPath(path), flags);
}
int rename(const char* from, const char* to) {
  return next_rename(MappedPath(from), MappedPath(to));
}
int mkdir(const char* path, mode_t mode) {
  return next_mkdir(MappedPath(path), mode);
}
int chmod(const char* path, mode_t mode) {
  return next_chmod(MappedPath(path), mode);
}

int execve(const char* path, char* const* arguments, char* const* environment) {
  return next_execve(MappedPath(path), arguments, environment);
}
int execv(const char* path, char* const* arguments) {
  return next_execve(MappedPath(path), arguments, environ);
}

// The daemon starts the board's programs by their absolute paths; a plain name would be looked for
// in PATH, which is not mapped.
int execlp(const char* file, const char* argument, ...) {
  std::array<char*, 256> arguments{};
  va_list rest;
  va_start(rest, argument);
  const char* next = argument;
  for (size_t i = 0; i + 1 < arguments.size() && next != nullptr; ++i) {
    arguments[i] = const_cast<char*>(next);
    next = va_arg(rest, const char*);
  }
  va_end(rest);
  return ::execvp(MappedPath(file), arguments.data());
}

}  // extern "C"
