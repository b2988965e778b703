// Collects the documents that are larger than one receive.
#ifndef QXAIQ_DOCUMENT_COLLECTION_H_
#define QXAIQ_DOCUMENT_COLLECTION_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/thread_annotations.h"
#include "documents/document.h"

namespace pq {

// An update of a document that has arrived whole.
struct CollectedDocument {
  Document document;
  std::string text;
};

// The bytes of a document that is larger than one receive. There is one collection in the process,
// not one a client: two clients that send large documents at once garble each other's. Calls are
// safe from several threads.
//
// Tools rely on these steps as they are: a packet start appends its data to what is there and sets
// the count to its own size; the count is not reset after a document. So the left-overs of an
// interrupted document garble the next large one, until a stray chunk that is no packet start
// arrives after a completed document: it overshoots the count and empties the collection.
class DocumentCollection {
 public:
  // A write packet starts, and this chunk holds all of it: only notes its document and size.
  void note_whole_packet(Document document, uint32_t data_length);

  // A write packet starts, and `data` is what has arrived of it.
  void start(Document document, uint32_t data_length, std::string_view data);

  // A chunk that is no packet start. Returns the update when this chunk completes it.
  //
  // None of these throws. Bytes for which there is no memory are counted and lost: that one update
  // fails ("packet error") when it is complete, and whatever else was collected stays.
  [[nodiscard]] std::optional<CollectedDocument> add(std::string_view chunk);

 private:
  void append(std::string_view bytes) REQUIRES(mutex_);
  std::optional<CollectedDocument> copy_document() REQUIRES(mutex_);
  void remove_counted() REQUIRES(mutex_);

  Mutex mutex_;
  std::vector<char> temp_buffer_ GUARDED_BY(mutex_);
  int32_t temp_buffer_size_ GUARDED_BY(mutex_) = 0;  // bytes counted; can run ahead of those kept
  uint32_t expected_length_ GUARDED_BY(mutex_) = 0;
  bool bytes_lost_ GUARDED_BY(mutex_) = false;
  Document document_ GUARDED_BY(mutex_) = Document::kPq;
};

}  // namespace pq

#endif  // QXAIQ_DOCUMENT_COLLECTION_H_
