#include "documents/document_transaction.h"

#include <utility>

#include "base/log.h"
#include "base/quit.h"
#include "documents/names.h"

namespace pq {

struct DocumentLocks {
  const char* path;
  FairMutex turn;  // of changes
  FairMutex file;  // while it is read or replaced
};

namespace {

DocumentLocks pq_locks{kPqDocument, {}, {}};
DocumentLocks aipq_locks{kAipqDocument, {}, {}};

DocumentLocks& locks_of(Document document) {
  return document == Document::kPq ? pq_locks : aipq_locks;
}

StoredDocument read(DocumentLocks& locks) {
  const FairMutexLock lock(locks.file);
  return {locks.path, read_document(locks.path)};
}

// Without the lock when the daemon shuts down first.
std::unique_lock<FairMutex> wait_for_turn(DocumentLocks& locks) NO_THREAD_SAFETY_ANALYSIS {
  if (!locks.turn.lock_unless(quit_requested)) {
    log_error()("a change of %s is dropped: the daemon shuts down", locks.path);
    return {};
  }
  return {locks.turn, std::adopt_lock};
}

}  // namespace

StoredDocument read_for_query(Document document) {
  return read(locks_of(document));
}

DocumentTransaction::DocumentTransaction(Document document)
    : locks_(locks_of(document)),
      turn_(wait_for_turn(locks_)),
      stored_(begun() ? read(locks_) : StoredDocument(locks_.path, {})) {}

int DocumentTransaction::save(const char* text) {
  const FairMutexLock lock(locks_.file);
  const bool damaged = stored_.state() == DocumentState::kDamaged;
  return damaged ? replace_damaged_document(locks_.path, text) : save_document(locks_.path, text);
}

}  // namespace pq
