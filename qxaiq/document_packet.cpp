#include "qxaiq/document_packet.h"

#include <cstring>
#include <vector>

#include "qxaiq/send.h"

ssize_t sendData(int sock, char* text) {
  if (text == nullptr) return -1;
  const size_t text_length = std::strlen(text);
  const size_t data_length = text_length + 2;  // with the bracket and the terminating zero
  const auto length_field = static_cast<uint32_t>(data_length);
  const pq::DocumentHeader header = {pq::kDocumentMagic, 0, 1, 1, length_field, length_field};

  // Zeroed: the terminating byte and the trailer are.
  std::vector<char> packet(sizeof(header) + data_length + pq::kDocumentTrailerSize);
  std::memcpy(packet.data(), &header, sizeof(header));
  packet[sizeof(header)] = '[';
  std::memcpy(packet.data() + sizeof(header) + 1, text, text_length);
  return pq::send_all(sock, packet);
}
