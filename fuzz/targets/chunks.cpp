// Chunks into the protocol handler, from several clients. A line after the first is a packet or a
// bare chunk: a letter for its form, a character for the client (by its low two bits), then bytes.
//
//   W w   a whole packet that updates the PQ or the AIPQ document
//   R r   a whole packet that queries it
//   S s   the same update, cut in the middle: a start and the rest
//   L     a packet start: command (a character), the error of the announced length (a character,
//         '@' for none), data
//   H     the same with an announced length near 2^31 ('@') or 2^32 ('`')
//   C     a command packet: number, then arguments; the rest is zero
//   c     the same, cut after the arguments
//   else  the bytes unchanged
#include <array>
#include <cstring>
#include <string>

#include "fuzz/support/board.h"
#include "fuzz/support/body.h"
#include "fuzz/support/check.h"
#include "fuzz/support/documents.h"
#include "fuzz/support/input.h"
#include "qxaiq/command_packet.h"
#include "qxaiq/document_packet.h"
#include "qxaiq/qxaiq_protocol.h"

namespace {

constexpr int kMaxPackets = 6;
constexpr size_t kReceiveSize = 8192;
constexpr size_t kCommandSize = sizeof(CommandData_t);

std::string header(uint32_t command, uint32_t length) {
  const pq::DocumentHeader header = {pq::kDocumentMagic, command, 0, 0, 0, length};
  return {reinterpret_cast<const char*>(&header), sizeof(header)};
}

std::string whole_packet(uint32_t command, std::string_view text) {
  return header(command, static_cast<uint32_t>(text.size())) + std::string(text) + "0000";
}

std::string misannounced_packet(std::string_view text, uint32_t base) {
  const uint32_t command = text.empty() ? 0 : text[0] % 8;
  const int off = text.size() < 2 ? 0 : text[1] - '@';
  text.remove_prefix(std::min<size_t>(2, text.size()));
  const uint32_t start = base != 0 ? base : static_cast<uint32_t>(text.size());
  return header(command, start + static_cast<uint32_t>(off)) + std::string(text);
}

std::string command_packet(std::string_view arguments) {
  CommandData_t packet = {};
  std::memcpy(packet.QXID, pq::kRequestMagic.data(), sizeof(packet.QXID));
  if (!arguments.empty()) packet.cmdID = arguments[0] % 8;
  if (arguments.size() > 1) {
    arguments.substr(1).copy(reinterpret_cast<char*>(packet.dat), sizeof(packet.dat));
  }
  return {reinterpret_cast<const char*>(&packet), kCommandSize};
}

// A connection from its receive thread's view. Each chunk is in a block of its own size, except for
// the bytes of earlier chunks that complete a short command packet.
class Client {
 public:
  void receive(int socket, std::string_view bytes) {
    for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), kReceiveSize)))
      receive_chunk(socket, bytes.substr(0, kReceiveSize));
  }

 private:
  void receive_chunk(int socket, std::string_view bytes) {
    std::string buffer(bytes);
    if (buffer.size() < kCommandSize) buffer.append(earlier_, buffer.size());
    earlier_ = buffer.substr(0, kCommandSize);
    const fuzz::Body block(buffer);
    QXAiqProtocol::HandlerTCPMessage(socket, block.bytes(), static_cast<int>(bytes.size()));
  }

  std::string earlier_ = std::string(kCommandSize, '\0');
};

void send_packet(Client& client, int socket, char form, std::string_view text) {
  const std::string packet =
      whole_packet(form == 'w' || form == 's' ? pq::kWriteAipq : pq::kWritePq, text);
  switch (form) {
    case 'W':
    case 'w':
      return client.receive(socket, packet);
    case 'R':
      return client.receive(socket, whole_packet(pq::kReadPq, text));
    case 'r':
      return client.receive(socket, whole_packet(pq::kReadAipq, text));
    case 'S':
    case 's':
      client.receive(socket, packet.substr(0, packet.size() / 2 + 12));
      return client.receive(socket, packet.substr(packet.size() / 2 + 12));
    case 'L':
      return client.receive(socket, misannounced_packet(text, 0));
    case 'H':
      return client.receive(socket, misannounced_packet(text, 0x7FFFFFFB));
    case 'C':
      return client.receive(socket, command_packet(text));
    case 'c':
      return client.receive(
          socket, command_packet(text).substr(
                      0, std::min(offsetof(CommandData_t, dat) + text.size(), kCommandSize)));
    default:
      return client.receive(socket, text);
  }
}

// The process has only one collection. It is emptied as tools do: a start of no bytes, then stray
// chunks, each counted together with those before it, until nothing is left; then again a count of
// zero.
void empty_collection() {
  Client client;
  client.receive(0, header(pq::kWritePq, 0));
  client.receive(0, std::string(3 * kReceiveSize, 'x'));
  client.receive(0, header(pq::kWritePq, 0));
}

size_t reply_size(std::string_view sent) {
  if (sent.starts_with(pq::kAcknowledgeMagic)) return kCommandSize;
  pq::DocumentHeader header = {};
  fuzz::require(sent.size() > sizeof(header), "a reply has a header");
  std::memcpy(&header, sent.data(), sizeof(header));
  fuzz::require(header.magic == pq::kDocumentMagic, "a reply is a packet");
  return sizeof(header) + header.data_length + pq::kDocumentTrailerSize;
}

void require_whole_replies(std::string_view sent) {
  while (!sent.empty()) {
    const size_t size = reply_size(sent);
    fuzz::require(size <= sent.size(), "a reply is whole");
    sent.remove_prefix(size);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size >= kReceiveSize) return 0;
  fuzz::Input input(data, size);
  fuzz::start_board(input);
  fuzz::put_documents();
  {
    const fuzz::NoDescriptorLeft check;
    empty_collection();
    std::array<Client, 4> clients;
    for (int i = 0; i < kMaxPackets && !input.at_end(); ++i) {
      const std::string_view line = input.line();
      if (line.size() < 2) continue;
      const size_t number = line[1] % clients.size();
      send_packet(clients[number], static_cast<int>(number), line[0], line.substr(2));
    }
  }
  for (const auto& [socket, sent] : fuzz::board.sent)
    require_whole_replies(sent);
  fuzz::require_sound_documents();
  return 0;
}
