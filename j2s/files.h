// What the mapping library's own files share: owning a descriptor, reading an opened file.
#ifndef J2S_FILES_H_
#define J2S_FILES_H_

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace j2s {

struct FreeBuffer {
  void operator()(char* buffer) const { std::free(buffer); }
};
using Buffer = std::unique_ptr<char, FreeBuffer>;

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool valid() const { return fd_ >= 0; }
  int get() const { return fd_; }
  int release() { return std::exchange(fd_, -1); }

 private:
  int fd_;
};

// Opens for reading; `extra_flags` go to open. `status` then describes what was opened.
// Refuses what is neither file nor directory, without waiting for a writer at the other end of a
// pipe. Not valid after a message in the name of j2s_read_file.
Descriptor open_for_reading(const char* path, int extra_flags, struct stat& status);

// Reads the file whose `status` says its size, in one read; a terminating 0 follows the content.
// Null after a message in the name of j2s_read_file.
Buffer read_opened(const Descriptor& file, const char* path, const struct stat& status);

// As j2s_read_file, but closes the file on every path. Null after a message; errno then says why:
// ENODEV for what is neither file nor directory, EIO for a file that became shorter meanwhile.
Buffer read_file(const char* path, size_t* size);

}  // namespace j2s

#endif  // J2S_FILES_H_
