// The only way of requests to the two documents: reading one for a query, and changing one.
//
// Each document has two locks of its own. One is held from reading the document to saving it, so
// that no change is lost; changes get their turn in the order of their arrival. The other is held
// only while the file is read or replaced, so that nobody sees half a save: a query never waits for
// a change of either document to be parsed, patched or printed.
#ifndef DOCUMENTS_DOCUMENT_TRANSACTION_H_
#define DOCUMENTS_DOCUMENT_TRANSACTION_H_

#include <mutex>

#include "base/fair_mutex.h"
#include "documents/document.h"
#include "documents/stored_document.h"

namespace pq {

struct DocumentLocks;

// Reads a document for a query. Waits for a save to end. Throws nothing.
StoredDocument read_for_query(Document document);

// A change of a document: the constructor waits for its turn and reads the document, save()
// replaces it, the destructor lets the next one begin. Never held across a wait, a send or the
// start of a program. Throws nothing.
class DocumentTransaction {
 public:
  explicit DocumentTransaction(Document document);
  DocumentTransaction(const DocumentTransaction&) = delete;
  DocumentTransaction& operator=(const DocumentTransaction&) = delete;

  // False when the daemon began to shut down before the turn came. Nothing was read then, and
  // nothing may be saved; stored() is unknown.
  [[nodiscard]] bool begun() const { return turn_.owns_lock(); }

  StoredDocument& stored() { return stored_; }

  // Saves the changed document; a damaged one is kept beside it. Returns the number of bytes
  // written, or -1 (document_file.h).
  [[nodiscard]] int save(const char* text);

 private:
  DocumentLocks& locks_;
  std::unique_lock<FairMutex> turn_;
  StoredDocument stored_;
};

}  // namespace pq

#endif  // DOCUMENTS_DOCUMENT_TRANSACTION_H_
