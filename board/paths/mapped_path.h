// A board's absolute path turned into the path on this machine.
#ifndef BOARD_PATHS_MAPPED_PATH_H_
#define BOARD_PATHS_MAPPED_PATH_H_

#include <climits>

namespace board {

// Usable between fork and exec: no lock, no allocation. A path of no mapped folder, and one that
// would grow too long, stays as it is.
class MappedPath {
 public:
  // path: may be null; has to outlive this object.
  explicit MappedPath(const char* path);

  operator const char*() const { return path_; }

 private:
  const char* path_;
  char buffer_[PATH_MAX];
};

}  // namespace board

#endif  // BOARD_PATHS_MAPPED_PATH_H_
