#include "startup/document_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <cstring>

#include "base/log.h"
#include "base/wait.h"
#include "documents/names.h"

namespace {

constexpr int kAttempts = 20;
constexpr std::chrono::milliseconds kPause{50};

// Returns 0, or the errno of the failure: EWOULDBLOCK when another process has the lock.
int lock(int folder) {
  for (int attempt = 1;; ++attempt) {
    if (flock(folder, LOCK_EX | LOCK_NB) == 0) return 0;
    if (errno != EWOULDBLOCK || attempt == kAttempts) return errno;
    pq::wait_whole(kPause);
  }
}

pq::UniqueFd serve_without_lock(int error) {
  pq::log_error()("cannot lock %s: %s; a second daemon would not be noticed\n", pq::kDocumentFolder,
                  std::strerror(error));
  return {};
}

}  // namespace

std::optional<pq::UniqueFd> lock_documents() {
  pq::UniqueFd folder(open(pq::kDocumentFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder.valid()) return serve_without_lock(errno);
  const int error = lock(folder.get());
  if (error == 0) return folder;
  if (error != EWOULDBLOCK) return serve_without_lock(error);
  pq::log_error()("another PQ tool server uses the documents in %s: stop it first\n",
                  pq::kDocumentFolder);
  return std::nullopt;
}
