// The command packet: a fixed 72-byte record, little-endian, for requests and acknowledgements.
#ifndef QXAIQ_COMMAND_PACKET_H_
#define QXAIQ_COMMAND_PACKET_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pq {

inline constexpr std::string_view kRequestMagic = "QXISP-AK";
inline constexpr std::string_view kAcknowledgeMagic = "QXISP-AS";

// Values of CommandData_t::cmdID.
inline constexpr uint16_t kCommandDump = 2;
inline constexpr uint16_t kCommandPattern = 3;
inline constexpr uint16_t kCommandPatternMode = 4;

// Values of dat[0]: which side of the picture processing to dump, and the pattern mode's switch.
inline constexpr uint8_t kDumpInput = 0x80;
inline constexpr uint8_t kDumpOutput = 0x81;
inline constexpr uint8_t kEnterPatternMode = 0x80;
inline constexpr uint8_t kLeavePatternMode = 0x81;

}  // namespace pq

struct __attribute__((packed)) CommandData_t {
  char QXID[8];  // kRequestMagic or kAcknowledgeMagic
  uint8_t unused_8[2];
  uint16_t cmdID;
  uint8_t unused_12[8];
  uint16_t datLen;  // meaningful bytes in dat; not used in requests, 1 in acknowledgements
  uint8_t dat[50];  // requests: flag byte, or red, green, blue; acknowledgements: 1
};
static_assert(sizeof(CommandData_t) == 72);
static_assert(offsetof(CommandData_t, cmdID) == 10);
static_assert(offsetof(CommandData_t, datLen) == 20);
static_assert(offsetof(CommandData_t, dat) == 22);

// Precedes the bytes of a picture dump in the reply to kCommandDump; little-endian.
// The reply carries no length: width, height and format give it.
struct __attribute__((packed)) DumpReplyHeader {
  uint16_t width;
  uint16_t height;
  uint8_t format;  // a PixelFormat of dump_capture.h
};
static_assert(sizeof(DumpReplyHeader) == 5);

#endif  // QXAIQ_COMMAND_PACKET_H_
