#include "qxaiq/qxaiq_protocol.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <string_view>

#include "base/log.h"
#include "qxaiq/command_handlers.h"
#include "qxaiq/command_packet.h"
#include "qxaiq/dump_command.h"

namespace {

std::mutex protocol_mutex;
bool running = true;  // guarded by protocol_mutex; nothing reads it, it is for a debugger

bool is_command_packet(std::string_view chunk) {
  return chunk.starts_with(pq::kRequestMagic);
}

void log_chunk(std::string_view chunk, const CommandData_t& packet) {
  pq::log_debug()("HandlerTCPMessage:\n");
  pq::log_debug()("1 HandlerTCPMessage CommandData_t: 0x%zx\n", sizeof(packet));
  const auto magic = static_cast<int>(std::min(chunk.size(), sizeof(packet.QXID)));
  pq::log_debug()("2 HandlerTCPMessage QXID: %.*s\n", magic, chunk.data());
  // Two lines with the number 3, as people know them.
  pq::log_debug()("3 HandlerTCPMessage datLen %d\n", packet.datLen);
  pq::log_debug()("3 HandlerTCPMessage cmdID %d\n", packet.cmdID);
}

}  // namespace

int QXAiqProtocol::HandlerTCPMessage(int sock, char* data, int length) {
  const std::string_view chunk(data, static_cast<size_t>(length));
  CommandData_t packet{};
  std::memcpy(&packet, data, sizeof(packet));
  log_chunk(chunk, packet);
  if (!is_command_packet(chunk)) return MessageForward(sock, data, length);
  switch (packet.cmdID) {
    case pq::kCommandDump:
      pq::send_dump(sock, packet);
      break;
    case pq::kCommandPattern:
      pq::show_pattern(sock, packet);
      break;
    case pq::kCommandPatternMode:
      pq::switch_pattern_mode(sock, packet);
      break;
    default:
      break;
  }
  return 0;
}

void QXAiqProtocol::Exit() {
  const std::lock_guard lock(protocol_mutex);
  running = false;
}
