// Checks of invariants, in addition to crashes.
#ifndef FUZZ_SUPPORT_CHECK_H_
#define FUZZ_SUPPORT_CHECK_H_

#include <fcntl.h>
#include <unistd.h>

namespace fuzz {

// Ends the process with a message unless the condition holds.
void require(bool holds, const char* what);

// Placed around code that must close every descriptor it opens.
class NoDescriptorLeft {
 public:
  NoDescriptorLeft() : lowest_(lowest_free()) {}
  ~NoDescriptorLeft() { require(lowest_free() == lowest_, "every descriptor is closed"); }
  NoDescriptorLeft(const NoDescriptorLeft&) = delete;
  NoDescriptorLeft& operator=(const NoDescriptorLeft&) = delete;

 private:
  // The kernel returns the lowest free descriptor.
  static int lowest_free() {
    const int fd = fcntl(0, F_DUPFD_CLOEXEC, 0);
    close(fd);
    return fd;
  }
  int lowest_;
};

}  // namespace fuzz

#endif  // FUZZ_SUPPORT_CHECK_H_
