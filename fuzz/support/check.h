// What a target asserts beyond "no crash".
#ifndef FUZZ_SUPPORT_CHECK_H_
#define FUZZ_SUPPORT_CHECK_H_

#include <fcntl.h>
#include <unistd.h>

namespace fuzz {

// Ends the process with a message when something that has to hold does not.
void require(bool holds, const char* what);

// Lives around a piece of work that must close every descriptor it opens.
class NoDescriptorLeft {
 public:
  NoDescriptorLeft() : lowest_(lowest_free()) {}
  ~NoDescriptorLeft() { require(lowest_free() == lowest_, "every descriptor is closed"); }
  NoDescriptorLeft(const NoDescriptorLeft&) = delete;
  NoDescriptorLeft& operator=(const NoDescriptorLeft&) = delete;

 private:
  // Given out lowest first.
  static int lowest_free() {
    const int fd = fcntl(0, F_DUPFD_CLOEXEC, 0);
    close(fd);
    return fd;
  }
  int lowest_;
};

}  // namespace fuzz

#endif  // FUZZ_SUPPORT_CHECK_H_
