#include "pqclient/packets.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "pqclient/error.h"

namespace pqclient {
namespace {

// "51 aa ff 58 (Q..X)": enough to recognise another program that answered.
std::string shown(ByteView bytes) {
  std::string hex;
  std::string text;
  for (const std::uint8_t byte : bytes) {
    std::array<char, 4> digits{};
    (void)std::snprintf(digits.data(), digits.size(), "%02x ", byte);
    hex += digits.data();
    text += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
  }
  return hex + "(" + text + ")";
}

ByteView as_bytes(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

Bytes make_document_packet(DocumentCommand command, std::string_view text) {
  DocumentHeader header{};
  header.magic = kDocumentMagic;
  header.command = static_cast<std::uint32_t>(command);
  header.data_length = static_cast<std::uint32_t>(text.size());

  Bytes packet(sizeof header + text.size() + kDocumentTrailerSize);
  std::memcpy(packet.data(), &header, sizeof header);
  std::ranges::copy(as_bytes(text), packet.begin() + sizeof header);
  return packet;
}

std::size_t reply_bytes_after(const DocumentHeader& header) {
  if (header.magic != kDocumentMagic) {
    throw Error(ErrorKind::kBadAnswer, "the answer begins with " + shown(header.magic) + ", not " +
                                           shown(kDocumentMagic) +
                                           ": something else than the PQ tool server answers");
  }
  // The shortest reply is the opening bracket and the terminating zero, without any text.
  if (header.data_length < 2 || header.data_length > kMaxReplyLength) {
    throw Error(ErrorKind::kBadAnswer,
                "the answer announces " + std::to_string(header.data_length) +
                    " bytes of text; valid are 2 to " + std::to_string(kMaxReplyLength));
  }
  return header.data_length + kDocumentTrailerSize;
}

Bytes make_command_packet(Command command, ByteView arguments) {
  CommandPacket packet{};
  std::ranges::copy(kCommandMagic, packet.magic.begin());
  packet.command = static_cast<std::uint16_t>(command);
  packet.data_length = static_cast<std::uint16_t>(arguments.size());
  std::ranges::copy(arguments.first(std::min(arguments.size(), packet.data.size())),
                    packet.data.begin());
  const auto bytes = bytes_of(packet);
  return {bytes.begin(), bytes.end()};
}

void check_acknowledgement(const CommandPacket& packet, Command command) {
  const std::string_view magic(packet.magic.data(), packet.magic.size());
  if (magic != kAcknowledgementMagic) {
    throw Error(ErrorKind::kBadAnswer, "the acknowledgement begins with " + shown(as_bytes(magic)) +
                                           ", not " + std::string(kAcknowledgementMagic));
  }
  if (packet.command != static_cast<std::uint16_t>(command) || packet.data[0] != 1) {
    throw Error(ErrorKind::kBadAnswer,
                "the board acknowledges command " + std::to_string(packet.command) +
                    " with status " + std::to_string(packet.data[0]) + "; command " +
                    std::to_string(static_cast<unsigned>(command)) + " with status 1 was expected");
  }
}

}  // namespace pqclient
