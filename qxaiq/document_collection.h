// Collects the documents that are larger than one receive.
#ifndef QXAIQ_DOCUMENT_COLLECTION_H_
#define QXAIQ_DOCUMENT_COLLECTION_H_

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace pq {

// A document that has arrived whole.
struct CollectedDocument {
  enum class Kind { kNone, kPq, kAipq };
  Kind kind = Kind::kNone;
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
  // A write packet starts, and this chunk holds all of it: only notes its kind and size.
  void note_whole_packet(bool aipq, uint32_t data_length);

  // A write packet starts, and `data` is what has arrived of it.
  void start(bool aipq, uint32_t data_length, std::string_view data);

  // A chunk that is no packet start. Returns the document when it is complete with it.
  CollectedDocument add(std::string_view chunk);

  // Forgets everything collected: for when memory has run out.
  void drop();

 private:
  void append(std::string_view bytes);
  void remove_counted();

  std::mutex mutex_;
  std::vector<char> temp_buffer_;
  int32_t temp_buffer_size_ = 0;  // bytes counted; can run ahead of what is kept
  uint32_t expected_length_ = 0;
  bool aipq_ = false;
};

}  // namespace pq

#endif  // QXAIQ_DOCUMENT_COLLECTION_H_
