#include "qxaiq/qxaiq_protocol.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "base/log.h"
#include "base/owner.h"
#include "base/thread_annotations.h"
#include "qxaiq/document_collection.h"
#include "qxaiq/dump_command.h"
#include "qxaiq/pattern_commands.h"

namespace pq {
namespace {

Mutex protocol_mutex;
bool running GUARDED_BY(protocol_mutex) = true;  // nothing reads it but a debugger

DocumentCollection collection;

// --- Command packets ---------------------------------------------------------------------------

bool is_command_packet(std::string_view chunk) {
  return chunk.starts_with(kRequestMagic);
}

void log_chunk(std::string_view chunk, const CommandData_t& packet) {
  log_debug()("HandlerTCPMessage:\n");
  log_debug()("1 HandlerTCPMessage CommandData_t: 0x%zx\n", sizeof(packet));
  const auto magic = static_cast<int>(std::min(chunk.size(), sizeof(packet.QXID)));
  log_debug()("2 HandlerTCPMessage QXID: %.*s\n", magic, chunk.data());
  // Two lines with the number 3, as people know them.
  log_debug()("3 HandlerTCPMessage datLen %d\n", packet.datLen);
  log_debug()("3 HandlerTCPMessage cmdID %d\n", packet.cmdID);
}

void run_command(int sock, const CommandData_t& packet) {
  switch (packet.cmdID) {
    case kCommandDump:
      send_dump(sock, packet);
      break;
    case kCommandPattern:
      show_pattern(sock, packet);
      break;
    case kCommandPatternMode:
      switch_pattern_mode(sock, packet);
      break;
    default:
      break;
  }
}

// --- Document packets --------------------------------------------------------------------------

bool is_document_start(std::string_view chunk) {
  return chunk.size() >= kDocumentMagic.size() &&
         std::memcmp(chunk.data(), kDocumentMagic.data(), kDocumentMagic.size()) == 0;
}

void update(Document document, char* text, size_t length) {
  if (document == Document::kAipq) {
    updateAIPQ(text, static_cast<uint32_t>(length));
  } else {
    updatePQ(text, static_cast<uint32_t>(length));
  }
}

void start_update(Document document, uint32_t data_length, char* data, size_t size) {
  // In 64 bits: a length near the largest would wrap, and a bare header look like a whole packet.
  const uint64_t whole = uint64_t{data_length} + kDocumentTrailerSize;
  if (size == whole) {
    log_debug()("one packet complete");
    collection.note_whole_packet(document, data_length);
    update(document, data, data_length);
  } else {
    collection.start(document, data_length, {data, size});
  }
}

// The query must fit into the packet's first chunk.
void answer_query(int sock, Document document, uint32_t data_length, char* data, size_t size) {
  const auto length = static_cast<uint32_t>(std::min<size_t>(data_length, size));
  const TextPtr answer(document == Document::kPq ? getPQ(data, length) : getAIPQ(data, length));
  sendData(sock, answer.get());
}

void start_document(int sock, char* chunk, size_t size) {
  log_debug()("is new packet");
  DocumentHeader header{};
  if (size < sizeof(header)) return;
  std::memcpy(&header, chunk, sizeof(header));
  char* data = chunk + sizeof(header);
  const size_t data_size = size - sizeof(header);
  switch (header.command) {
    case kWritePq:
      start_update(Document::kPq, header.data_length, data, data_size);
      break;
    case kReadPq:
      answer_query(sock, Document::kPq, header.data_length, data, data_size);
      break;
    case kWriteAipq:
      start_update(Document::kAipq, header.data_length, data, data_size);
      break;
    case kReadAipq:
      answer_query(sock, Document::kAipq, header.data_length, data, data_size);
      break;
    default:
      break;
  }
}

void continue_document(std::string_view chunk) {
  std::optional<CollectedDocument> collected = collection.add(chunk);
  if (collected) update(collected->document, collected->text.data(), collected->text.size());
}

}  // namespace
}  // namespace pq

int QXAiqProtocol::HandlerTCPMessage(int sock, char* data, int length) {
  const std::string_view chunk(data, static_cast<size_t>(length));
  CommandData_t packet{};
  std::memcpy(&packet, data, sizeof(packet));
  pq::log_chunk(chunk, packet);
  if (!pq::is_command_packet(chunk)) return MessageForward(sock, data, length);
  pq::run_command(sock, packet);
  return 0;
}

int QXAiqProtocol::MessageForward(int sock, char* data, int length) {
  const std::string_view chunk(data, static_cast<size_t>(length));
  if (pq::is_document_start(chunk)) {
    pq::start_document(sock, data, chunk.size());
  } else {
    pq::continue_document(chunk);
  }
  return 0;
}

void QXAiqProtocol::Exit() {
  const pq::MutexLock lock(pq::protocol_mutex);
  pq::running = false;
}
