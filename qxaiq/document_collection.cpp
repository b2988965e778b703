#include "qxaiq/document_collection.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>

#include "base/log.h"
#include "json/limits.h"
#include "qxaiq/document_packet.h"

namespace pq {
namespace {

int32_t add_saturated(int32_t count, size_t more) {
  constexpr auto kMax = std::numeric_limits<int32_t>::max();
  const int64_t sum = int64_t{count} + static_cast<int64_t>(more);
  return sum > kMax ? kMax : static_cast<int32_t>(sum);
}

}  // namespace

void DocumentCollection::note_whole_packet(Document document, uint32_t data_length) {
  const MutexLock lock(mutex_);
  document_ = document;
  expected_length_ = data_length;
}

void DocumentCollection::start(Document document, uint32_t data_length, std::string_view data) {
  const MutexLock lock(mutex_);
  document_ = document;
  expected_length_ = data_length;
  append(data);
  temp_buffer_size_ = static_cast<int32_t>(data.size());
}

std::optional<CollectedDocument> DocumentCollection::add(std::string_view chunk) {
  const MutexLock lock(mutex_);
  append(chunk);
  temp_buffer_size_ = add_saturated(temp_buffer_size_, chunk.size());
  log_debug()("temp_buffer_size %d ", temp_buffer_size_);

  // Compared as signed numbers, on purpose: a huge announced length makes the limit negative, and
  // the first continuation ends it as an error.
  const auto limit = static_cast<int32_t>(expected_length_ + kDocumentTrailerSize);
  if (temp_buffer_size_ < limit) {
    log_debug()("packet no compelete");
    return std::nullopt;
  }
  std::optional<CollectedDocument> collected;
  if (temp_buffer_size_ == limit && temp_buffer_.size() >= expected_length_ && !bytes_lost_) {
    log_debug()("packet complete");
    collected = copy_document();
  } else {
    log_debug()("packet error");
  }
  remove_counted();
  bytes_lost_ = false;
  document_ = Document::kPq;
  return collected;
}

void DocumentCollection::append(std::string_view bytes) {
  // Bytes past the limit are counted and not kept: an announced length of 2 GB costs no memory.
  const size_t room = kMaxDocumentSize - std::min(kMaxDocumentSize, temp_buffer_.size());
  const std::string_view kept = bytes.substr(0, room);
  try {
    temp_buffer_.insert(temp_buffer_.end(), kept.begin(), kept.end());
  } catch (const std::bad_alloc&) {
    log_error()("no memory for %zu more bytes of an update: it will be dropped", kept.size());
    bytes_lost_ = true;
  }
}

std::optional<CollectedDocument> DocumentCollection::copy_document() {
  try {
    return CollectedDocument{document_, {temp_buffer_.data(), expected_length_}};
  } catch (const std::bad_alloc&) {
    log_error()("no memory for an update of %u bytes: it is dropped", expected_length_);
    return std::nullopt;
  }
}

// The count stays: only the next packet start sets it again.
void DocumentCollection::remove_counted() {
  const size_t count = std::min(temp_buffer_.size(), static_cast<size_t>(temp_buffer_size_));
  temp_buffer_.erase(temp_buffer_.begin(), temp_buffer_.begin() + static_cast<ptrdiff_t>(count));
}

}  // namespace pq
