#include "qxaiq/pattern_commands.h"

#include <atomic>
#include <cstdint>
#include <cstring>
#include <mutex>

#include "base/log.h"
#include "common/pq_tuning_utils.h"
#include "documents/document_file.h"
#include "documents/names.h"
#include "documents/pq_parameters.h"
#include "qxaiq/change_counter.h"
#include "qxaiq/send.h"

namespace pq {
namespace {

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
