// An fsync that fails for one file, as on a disk that wears out.
#ifndef TESTS_DOCUMENTS_FAILING_SYNC_H_
#define TESTS_DOCUMENTS_FAILING_SYNC_H_

#include <string>

// While one lives, fsync fails with EIO for the file of this path.
class FailingSync {
 public:
  explicit FailingSync(const std::string& path);
  ~FailingSync();
  FailingSync(const FailingSync&) = delete;
  FailingSync& operator=(const FailingSync&) = delete;
};

#endif  // TESTS_DOCUMENTS_FAILING_SYNC_H_
