#include "qxaiq/document_packet.h"

#include <cstring>
#include <new>
#include <vector>

#include "base/log.h"
#include "qxaiq/send.h"

namespace pq {
namespace {

// Throws std::bad_alloc.
std::vector<char> make_reply(const char* text) {
  const size_t text_length = std::strlen(text);
  const size_t data_length = text_length + 2;  // with the bracket and the terminating zero
  const auto length_field = static_cast<uint32_t>(data_length);
  const DocumentHeader header = {kDocumentMagic, 0, 1, 1, length_field, length_field};

  // Zeroed: the terminating byte and the trailer are.
  std::vector<char> packet(sizeof(header) + data_length + kDocumentTrailerSize);
  std::memcpy(packet.data(), &header, sizeof(header));
  packet[sizeof(header)] = '[';
  std::memcpy(packet.data() + sizeof(header) + 1, text, text_length);
  return packet;
}

}  // namespace
}  // namespace pq

ssize_t sendData(int sock, char* text) {
  if (text == nullptr) return -1;
  try {
    return pq::send_all(sock, pq::make_reply(text));
  } catch (const std::bad_alloc&) {
    pq::log_error()("no memory for a reply of %zu bytes: it is not sent", std::strlen(text));
    return -1;
  }
}
