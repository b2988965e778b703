#include "qxaiq/pattern_commands.h"

#include <atomic>
#include <cstdint>
#include <cstring>
#include <new>

#include "base/log.h"
#include "common/pq_tuning_utils.h"
#include "documents/document_transaction.h"
#include "documents/names.h"
#include "documents/pq_parameters.h"
#include "qxaiq/change_counter.h"
#include "qxaiq/send.h"

namespace pq {
namespace {

// Changes only within a transaction of the PQ document.
std::atomic<int8_t> saved_dci_switch = 0;

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

// Saves the document whatever could be read of it: one that is missing or damaged is replaced by
// zeros. One that a fault hides stays.
void store_dci_switch(uint8_t flag, DocumentTransaction& transaction) {
  StoredDocument& stored = transaction.stored();
  const JsonPtr item = take_pq_parameters(stored);
  if (stored.state() == DocumentState::kUnknown) return;
  J2sContext context;
  PqParameters parameters;
  parameters.load(context.get(), item.get());
  change_dci_switch(flag, parameters.values);
  if (stored.state() != DocumentState::kWhole) {
    log_error()("pattern mode writes zeros over what could not be read of %s", stored.path());
  }
  const int saved = transaction.save(print_pq_document(context.get(), parameters.values).get());
  log_debug()("j2s_save_file ret %d", saved);
}

// Returns false when the daemon shuts down first.
bool change_document(uint8_t flag) {
  DocumentTransaction transaction(Document::kPq);
  if (!transaction.begun()) return false;
  try {
    store_dci_switch(flag, transaction);
  } catch (const std::bad_alloc&) {
    log_error()("no memory to switch DCI in %s: it stays as it was", transaction.stored().path());
  }
  return true;
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
  if (!change_document(flag)) return;
  bump(kTimelineCounter);
  PQTuningUtils::updateUI();
  acknowledge(sock, request.cmdID);
}

}  // namespace pq
