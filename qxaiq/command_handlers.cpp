#include "qxaiq/command_handlers.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <optional>
#include <vector>

#include <cutils/properties.h>

#include "base/log.h"
#include "base/wait.h"
#include "common/pq_tuning_utils.h"
#include "documents/document_file.h"
#include "documents/names.h"
#include "documents/pq_parameters.h"
#include "qxaiq/change_counter.h"
#include "qxaiq/dump_capture.h"
#include "qxaiq/send.h"

namespace pq {
namespace {

// The display service sees the request before the redraw, and writes the dump after it.
constexpr std::chrono::milliseconds kBeforeRedraw{200};
constexpr std::chrono::seconds kForDump{2};

int8_t saved_dci_switch = 0;  // guarded by document_mutex

void acknowledge(int sock, uint16_t command) {
  CommandData_t packet{};
  std::memcpy(packet.QXID, kAcknowledgeMagic.data(), sizeof(packet.QXID));
  packet.cmdID = command;
  packet.datLen = 1;
  packet.dat[0] = 1;
  const ssize_t sent = send_all(sock, {reinterpret_cast<const char*>(&packet), sizeof(packet)});
  log_debug()("send ret %zd", sent);
}

void request_dump(uint8_t side) {
  if (side == kDumpInput) property_set(kInputDumpProperty, "1");
  if (side == kDumpOutput) property_set(kOutputDumpProperty, "1");
  wait_whole(kBeforeRedraw);
  PQTuningUtils::updateUI();
  wait_whole(kForDump);
}

struct Dump {
  TextPtr bytes;
  unsigned long size = 0;
  DumpReplyHeader header{};
};

std::optional<Dump> fetch_dump() {
  std::array<char, PROPERTY_VALUE_MAX> path{};
  if (property_get(kDumpPathProperty, path.data(), nullptr) < 1) return std::nullopt;
  log_error()("path_prop %s", path.data());
  int width = 0;
  int height = 0;
  int format = 0;
  if (get_dump_info(path.data(), &width, &height, &format) != 0) return std::nullopt;
  property_set(kDumpPathProperty, "");
  log_error()("dump_width %d dump_height %d dump_format %d", width, height, format);

  Dump dump;
  dump.bytes.reset(getPqDumpData(path.data(), &dump.size));
  log_error()("getPqDumpData %lu", dump.size);
  if (!dump.bytes || dump.size == 0) return std::nullopt;
  dump.header = {static_cast<uint16_t>(width), static_cast<uint16_t>(height),
                 static_cast<uint8_t>(format)};
  return dump;
}

void change_dci_switch(uint8_t flag, pq_tuning_param& parameters) {
  if (flag == kEnterPatternMode) {
    saved_dci_switch = parameters.dci.dciEnable;
    parameters.dci.dciEnable = 0;
  } else {
    parameters.dci.dciEnable = saved_dci_switch;
  }
}

// Writes the document whatever could be read of it: one that yields nothing is replaced by zeros.
void change_document(uint8_t flag) {
  const std::lock_guard lock(document_mutex);
  const JsonPtr stored = read_document(kPqDocument);
  J2sContext context;
  PqParameters parameters;
  parameters.load(context.get(), cJSON_GetObjectItem(stored.get(), "pq_tuning_param"));
  change_dci_switch(flag, parameters.values);
  const int saved = save_pq_document(kPqDocument, context.get(), parameters.values);
  log_debug()("j2s_save_file ret %d", saved);
}

}  // namespace

void send_dump(int sock, const CommandData_t& request) {
  log_debug()("3 HandlerTCPMessage dat[0] %d\n", request.dat[0]);
  request_dump(request.dat[0]);
  std::optional<Dump> dump = fetch_dump();
  if (!dump) return;
  const auto* header = reinterpret_cast<const char*>(&dump->header);
  std::vector<char> reply;
  reply.reserve(sizeof(dump->header) + dump->size);
  reply.assign(header, header + sizeof(dump->header));
  reply.insert(reply.end(), dump->bytes.get(), dump->bytes.get() + dump->size);
  dump.reset();  // megabytes, and who reads slowly takes long
  log_error()("send ret %zd", send_all(sock, reply));
}

void show_pattern(int sock, const CommandData_t& request) {
  const uint8_t* colour = request.dat;
  // No colon after the b: an old text that people look for.
  log_debug()("3 HandlerTCPMessage r:%d,g:%d,b%d\n", colour[0], colour[1], colour[2]);
  PQTuningUtils::showPattern(colour[0], colour[1], colour[2]);
  acknowledge(sock, request.cmdID);
}

void switch_pattern_mode(int sock, const CommandData_t& request) {
  const uint8_t flag = request.dat[0];
  log_debug()("4 HandlerTCPMessage flag %d\n", flag);
  if (flag != kEnterPatternMode && flag != kLeavePatternMode) return;
  // Off the screen first: DCI comes back for the picture, not for the pattern.
  if (flag == kLeavePatternMode) PQTuningUtils::closePattern();
  change_document(flag);
  bump(kTimelineCounter);
  PQTuningUtils::updateUI();
  acknowledge(sock, request.cmdID);
}

}  // namespace pq
