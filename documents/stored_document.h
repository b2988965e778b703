// A document as it is stored.
#ifndef DOCUMENTS_STORED_DOCUMENT_H_
#define DOCUMENTS_STORED_DOCUMENT_H_

#include "documents/document.h"
#include "documents/document_file.h"
#include "json/tree.h"

namespace pq {

// The text that one reading found, and what is known of it. Nothing here throws. Any defect of a
// document is logged at error priority, once for each reading.
class StoredDocument {
 public:
  StoredDocument(const char* path, DocumentText found)
      : path_(path), state_(found.state), text_(std::move(found.text)) {}

  [[nodiscard]] const char* path() const { return path_; }
  [[nodiscard]] DocumentState state() const { return state_; }

  // Null unless the document is whole.
  [[nodiscard]] const char* text() const { return text_.get(); }

  // The text's tree, which may be shallow (j2s/shallow_tree.h): j2s loads and cJSON prints what is
  // not built, and code that looks into it calls j2s::expand. Null unless the document is whole. A
  // text that is not JSON is found to be damaged here. Lack of memory leaves the state unknown.
  JsonPtr parse();

  // For callers that run out of memory further inside; logs it. The state is unknown then.
  void mark_unknown();

  // For callers that find damage further inside. `why` completes "PATH is damaged: ...".
  void mark_damaged(const char* why);

  // Frees the text: a large document's memory is needed for what is made of it.
  void release_text() { text_.reset(); }

 private:
  const char* path_;
  DocumentState state_;
  TextPtr text_;
};

}  // namespace pq

#endif  // DOCUMENTS_STORED_DOCUMENT_H_
