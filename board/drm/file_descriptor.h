// Owns a file descriptor: closes it when it goes out of scope.
#ifndef BOARD_DRM_FILE_DESCRIPTOR_H_
#define BOARD_DRM_FILE_DESCRIPTOR_H_

#include <unistd.h>

#include <utility>

namespace board::drm {

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&&) = delete;
  ~FileDescriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }

  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace board::drm

#endif  // BOARD_DRM_FILE_DESCRIPTOR_H_
