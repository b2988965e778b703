#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>

#include "base/log.h"
#include "base/owner.h"
#include "qxaiq/document_collection.h"
#include "qxaiq/document_packet.h"
#include "qxaiq/pq_service.h"
#include "qxaiq/qxaiq_protocol.h"

namespace pq {
namespace {

DocumentCollection collection;

bool is_packet_start(std::string_view chunk) {
  return chunk.size() >= kDocumentMagic.size() &&
         std::memcmp(chunk.data(), kDocumentMagic.data(), kDocumentMagic.size()) == 0;
}

void change(bool aipq, char* text, uint32_t length) {
  if (aipq) {
    updateAIPQ(text, length);
  } else {
    updatePQ(text, length);
  }
}

void start_change(const DocumentHeader& header, char* data, size_t size) {
  const bool aipq = header.command == kWriteAipq;
  // In 64 bits: a length near the largest would wrap, and a bare header look like a whole packet.
  const uint64_t whole = uint64_t{header.data_length} + kDocumentTrailerSize;
  if (size == whole) {
    log_debug()("one packet complete");
    collection.note_whole_packet(aipq, header.data_length);
    change(aipq, data, header.data_length);
  } else {
    collection.start(aipq, header.data_length, {data, size});
  }
}

// The query must fit into the packet's first chunk.
void answer_query(int sock, const DocumentHeader& header, char* data, size_t size) {
  const auto length = static_cast<uint32_t>(std::min<size_t>(header.data_length, size));
  const TextPtr answer(header.command == kReadPq ? getPQ(data, length) : getAIPQ(data, length));
  sendData(sock, answer.get());
}

void start_packet(int sock, char* chunk, size_t size) {
  log_debug()("is new packet");
  DocumentHeader header{};
  if (size < sizeof(header)) return;
  std::memcpy(&header, chunk, sizeof(header));
  char* data = chunk + sizeof(header);
  const size_t data_size = size - sizeof(header);
  switch (header.command) {
    case kWritePq:
    case kWriteAipq:
      start_change(header, data, data_size);
      break;
    case kReadPq:
    case kReadAipq:
      answer_query(sock, header, data, data_size);
      break;
    default:
      break;
  }
}

void continue_document(std::string_view chunk) {
  CollectedDocument document = collection.add(chunk);
  if (document.kind == CollectedDocument::Kind::kNone) return;
  change(document.kind == CollectedDocument::Kind::kAipq, document.text.data(),
         static_cast<uint32_t>(document.text.size()));
}

}  // namespace
}  // namespace pq

int QXAiqProtocol::MessageForward(int sock, char* data, int length) {
  const std::string_view chunk(data, static_cast<size_t>(length));
  try {
    if (pq::is_packet_start(chunk)) {
      pq::start_packet(sock, data, chunk.size());
    } else {
      pq::continue_document(chunk);
    }
  } catch (const std::bad_alloc&) {
    // What has been collected is of no use without the rest.
    pq::collection.drop();
    throw;
  }
  return 0;
}
