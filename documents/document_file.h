// A document's file on the board's disk: read and saved so that one whole text is there whenever
// the power goes. Knows nothing of locks: see document_transaction.h.
//
// Nothing here throws. Failures are logged here, at error priority, with the path and the reason.
#ifndef DOCUMENTS_DOCUMENT_FILE_H_
#define DOCUMENTS_DOCUMENT_FILE_H_

#include "base/owner.h"

namespace pq {

// The state of a document's file.
enum class DocumentState {
  kWhole,    // its text is there
  kMissing,  // there is no file, or none that may be read; a retry would not help
  kDamaged,  // the file is not such a document: not JSON, or larger than kMaxDocumentSize
  kUnknown,  // a fault kept it from being read: no memory, no descriptor, an error of the disk
};

struct DocumentText {
  DocumentState state = DocumentState::kUnknown;
  TextPtr text;  // null unless kWhole; not yet known to be JSON
};

// Reads a document. A text that an interrupted save left in the side file is put back first; a
// missing document is never created.
DocumentText read_document(const char* path);

// Replaces a document, or creates it. Saving truncates the file before it writes, and a kill in
// between is how the service is normally stopped; so the text goes to a side file next to the
// document first.
// Returns the number of bytes written, or -1. When the side file cannot be written the document
// stays as it was; when the document itself cannot, or the disk does not confirm it, the side file
// stays for restore_document.
int save_document(const char* path, const char* text);

// As save_document, for a damaged document: its file is kept beside it, as "NAME.damaged". An
// earlier one of that name is replaced. Returns -1 when it cannot be kept; it stays as it was then.
int replace_damaged_document(const char* path, const char* text);

// For start-up: settles what an earlier save left behind. A document that cannot be read any more
// is restored from the side file; a side file that is not needed is removed. Returns false when
// that is not possible now; the document is served from the side file then.
bool restore_document(const char* path);

}  // namespace pq

#endif  // DOCUMENTS_DOCUMENT_FILE_H_
