#include "qxaiq/document_collection.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "base/log.h"
#include "qxaiq/document_packet.h"

namespace pq {
namespace {

// Far above any real document (an AIPQ one has 0.7 MB). Bytes past it are counted and not kept, so
// that an announced length of 2 GB costs nobody's memory.
constexpr size_t kMostKept = size_t{8} * 1024 * 1024;

int32_t add_saturated(int32_t count, size_t more) {
  constexpr auto kMost = std::numeric_limits<int32_t>::max();
  const int64_t sum = int64_t{count} + static_cast<int64_t>(more);
  return sum > kMost ? kMost : static_cast<int32_t>(sum);
}

}  // namespace

void DocumentCollection::note_whole_packet(bool aipq, uint32_t data_length) {
  const std::lock_guard lock(mutex_);
  aipq_ = aipq;
  expected_length_ = data_length;
}

void DocumentCollection::start(bool aipq, uint32_t data_length, std::string_view data) {
  const std::lock_guard lock(mutex_);
  aipq_ = aipq;
  expected_length_ = data_length;
  append(data);
  temp_buffer_size_ = static_cast<int32_t>(data.size());
}

CollectedDocument DocumentCollection::add(std::string_view chunk) {
  const std::lock_guard lock(mutex_);
  append(chunk);
  temp_buffer_size_ = add_saturated(temp_buffer_size_, chunk.size());
  log_debug()("temp_buffer_size %d ", temp_buffer_size_);

  // Compared as signed numbers, on purpose: a huge announced length makes the limit negative, and
  // the first continuation ends it as an error.
  const auto limit = static_cast<int32_t>(expected_length_ + kDocumentTrailerSize);
  if (temp_buffer_size_ < limit) {
    log_debug()("packet no compelete");
    return {};
  }
  CollectedDocument document;
  if (temp_buffer_size_ == limit && temp_buffer_.size() >= expected_length_) {
    log_debug()("packet complete");
    document.text.assign(temp_buffer_.data(), expected_length_);
    document.kind = aipq_ ? CollectedDocument::Kind::kAipq : CollectedDocument::Kind::kPq;
  } else {
    log_debug()("packet error");
  }
  remove_counted();
  aipq_ = false;
  return document;
}

void DocumentCollection::drop() {
  const std::lock_guard lock(mutex_);
  std::vector<char>().swap(temp_buffer_);
  temp_buffer_size_ = 0;
  aipq_ = false;
}

void DocumentCollection::append(std::string_view bytes) {
  const size_t room = kMostKept - std::min(kMostKept, temp_buffer_.size());
  const std::string_view kept = bytes.substr(0, room);
  temp_buffer_.insert(temp_buffer_.end(), kept.begin(), kept.end());
}

// The count stays: only the next packet start sets it anew.
void DocumentCollection::remove_counted() {
  const size_t count = std::min(temp_buffer_.size(), static_cast<size_t>(temp_buffer_size_));
  temp_buffer_.erase(temp_buffer_.begin(), temp_buffer_.begin() + static_cast<ptrdiff_t>(count));
}

}  // namespace pq
