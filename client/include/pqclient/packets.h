// The bytes on the wire: layouts of all packets. No other file builds packets or takes them apart.
// Every field is little-endian. No I/O here; any thread may call.
#ifndef PQCLIENT_PACKETS_H_
#define PQCLIENT_PACKETS_H_

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace pqclient {

static_assert(std::endian::native == std::endian::little,
              "the packet structures are read and written in place");

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

inline constexpr std::uint16_t kDefaultPort = 5543;

// The most bytes that the board takes in one receive. A longer packet arrives in several pieces.
inline constexpr std::size_t kReceiveSize = 8192;

// ---- Document packets: JSON text in both directions ----
//
//   request  header (24) | n bytes of text, not terminated          | 4 bytes, ignored
//   reply    header (24) | "[", text, one zero byte: n bytes in all | 4 bytes, ignored
//
// The reply has no closing bracket, see parse_answer() in answer.h.

inline constexpr std::array<std::uint8_t, 4> kDocumentMagic = {0x51, 0xAA, 0xFF, 0x58};
inline constexpr std::size_t kDocumentTrailerSize = 4;

// The longest reply that is accepted: 30 times the AIPQ document with all its tables.
inline constexpr std::uint32_t kMaxReplyLength = 8U << 20;

enum class DocumentCommand : std::uint32_t {
  kUpdatePq = 0,
  kQueryPq = 1,
  kUpdateAipq = 2,
  kQueryAipq = 3,
};

struct DocumentHeader {
  std::array<std::uint8_t, 4> magic;
  std::uint32_t command;                  // 0 in a reply
  std::array<std::uint8_t, 12> reserved;  // request: anything; reply: 1, 1 and data_length again
  std::uint32_t data_length;              // n, without header and trailer
};
static_assert(sizeof(DocumentHeader) == 24);
static_assert(offsetof(DocumentHeader, command) == 4);
static_assert(offsetof(DocumentHeader, data_length) == 20);

// A whole request: header, text, a trailer of zeros.
Bytes make_document_packet(DocumentCommand command, std::string_view text);

// Checks the header of a reply and returns the number of bytes that follow it, trailer included.
// Throws Error kBadAnswer if the magic is wrong or the length is not in 2 .. kMaxReplyLength.
std::size_t reply_bytes_after(const DocumentHeader& header);

// ---- Command packets: 72 bytes, acknowledged by a packet of the same layout ----

inline constexpr std::string_view kCommandMagic = "QXISP-AK";
inline constexpr std::string_view kAcknowledgementMagic = "QXISP-AS";

enum class Command : std::uint16_t {
  kDump = 2,         // argument: kFlagFirst input, kFlagSecond output; answered by a dump
  kPattern = 3,      // arguments: red, green, blue; acknowledged
  kPatternMode = 4,  // argument: kFlagFirst enter, kFlagSecond leave; acknowledged
};

// The two flag values that the board recognises.
inline constexpr std::uint8_t kFlagFirst = 0x80;
inline constexpr std::uint8_t kFlagSecond = 0x81;

struct CommandPacket {
  std::array<char, 8> magic;
  std::array<std::uint8_t, 2> reserved1;
  std::uint16_t command;
  std::array<std::uint8_t, 8> reserved2;
  std::uint16_t data_length;  // meaningful bytes of data
  std::array<std::uint8_t, 50> data;
};
static_assert(sizeof(CommandPacket) == 72);
static_assert(offsetof(CommandPacket, command) == 10);
static_assert(offsetof(CommandPacket, data_length) == 20);
static_assert(offsetof(CommandPacket, data) == 22);

// arguments: at most 50 bytes; the rest of the packet is zero.
Bytes make_command_packet(Command command, ByteView arguments);

// Throws Error kBadAnswer unless the packet acknowledges `command`.
void check_acknowledgement(const CommandPacket& packet, Command command);

// ---- The header of a dump; only these three fields give the size of the picture that follows ----

struct [[gnu::packed]] DumpHeader {
  std::uint16_t width;   // pixels
  std::uint16_t height;  // lines
  std::uint8_t format;   // DumpFormat
};
static_assert(sizeof(DumpHeader) == 5);

// A record as writable bytes, as a receive buffer.
template <typename Record>
std::span<std::uint8_t> bytes_of(Record& record) {
  return {reinterpret_cast<std::uint8_t*>(&record), sizeof(Record)};
}

}  // namespace pqclient

#endif  // PQCLIENT_PACKETS_H_
