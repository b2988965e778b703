// Owners of C resources: a pointer that a C function frees, and a file descriptor.
#ifndef BASE_OWNER_H_
#define BASE_OWNER_H_

#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace pq {

// A deleter that calls a C function; it takes no room in the owning pointer.
template <auto Free>
struct Call {
  void operator()(auto* pointer) const { Free(pointer); }
};

// A text from malloc, as cJSON prints it and j2s reads it.
using TextPtr = std::unique_ptr<char, Call<std::free>>;

// A file descriptor, closed when its owner dies. A function that only uses one takes a plain int.
class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int fd) : fd_(fd) {}
  ~UniqueFd() { reset(); }
  UniqueFd(UniqueFd&& other) noexcept : fd_(other.release()) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;

  [[nodiscard]] bool valid() const { return fd_ >= 0; }  // 0 is a valid descriptor
  [[nodiscard]] int get() const { return fd_; }
  int release() { return std::exchange(fd_, -1); }
  void reset(int fd = -1) {
    // Not retried on EINTR: Linux has given the descriptor back by then.
    if (fd_ >= 0) ::close(fd_);
    fd_ = fd;
  }

 private:
  int fd_ = -1;
};

}  // namespace pq

#endif  // BASE_OWNER_H_
