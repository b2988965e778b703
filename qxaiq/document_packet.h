// Document packets: JSON text in a frame, little-endian.
//
//   request   header, n bytes of text (not terminated), 4 trailer bytes that nobody interprets
//   reply     header, "[" text zero, 4 trailer bytes of zero
//
// The reply has no closing bracket: clients rely on the text ending in a zero byte there.
#ifndef QXAIQ_DOCUMENT_PACKET_H_
#define QXAIQ_DOCUMENT_PACKET_H_

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace pq {

inline constexpr std::array<uint8_t, 4> kDocumentMagic = {0x51, 0xAA, 0xFF, 0x58};
inline constexpr uint32_t kDocumentTrailerSize = 4;

// Values of DocumentHeader::command in requests; larger ones are ignored.
inline constexpr uint32_t kWritePq = 0;
inline constexpr uint32_t kReadPq = 1;
inline constexpr uint32_t kWriteAipq = 2;
inline constexpr uint32_t kReadAipq = 3;

struct __attribute__((packed)) DocumentHeader {
  std::array<uint8_t, 4> magic;
  uint32_t command;    // replies: 0
  uint32_t unused_8;   // replies: 1
  uint32_t unused_12;  // replies: 1
  uint32_t unused_16;  // replies: the data length once more
  uint32_t data_length;
};
static_assert(sizeof(DocumentHeader) == 24);
static_assert(offsetof(DocumentHeader, command) == 4);
static_assert(offsetof(DocumentHeader, data_length) == 20);

}  // namespace pq

// Frames `text` as a reply and sends it. Returns the number of bytes sent, or -1 when `text` is
// null, memory runs out, or the client cannot be reached any more. The text stays the caller's and
// is only read.
ssize_t sendData(int sock, char* text);

#endif  // QXAIQ_DOCUMENT_PACKET_H_
