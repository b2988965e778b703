// Owns a file descriptor: closes it when it goes out of scope.
#ifndef BOARD_FILES_FILE_DESCRIPTOR_H_
#define BOARD_FILES_FILE_DESCRIPTOR_H_

#include <unistd.h>

#include <utility>

namespace board {

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor = -1) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~FileDescriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }

  [[nodiscard]] int get() const { return descriptor_; }
  [[nodiscard]] bool valid() const { return descriptor_ >= 0; }

 private:
  int descriptor_;
};

}  // namespace board

#endif  // BOARD_FILES_FILE_DESCRIPTOR_H_
