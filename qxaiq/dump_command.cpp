#include "qxaiq/dump_command.h"

#include <array>
#include <chrono>
#include <mutex>
#include <optional>
#include <vector>

#include <cutils/properties.h>

#include "base/fair_mutex.h"
#include "base/log.h"
#include "base/owner.h"
#include "base/quit.h"
#include "base/wait.h"
#include "common/pq_tuning_utils.h"
#include "documents/names.h"
#include "qxaiq/dump_capture.h"
#include "qxaiq/send.h"

namespace pq {
namespace {

// The display service sees the request before the redraw, and writes the dump after it.
constexpr std::chrono::milliseconds kRedrawDelay{200};
constexpr std::chrono::seconds kDumpWait{2};

// One property names the dump for the whole board: of two captures at once, each could take the
// other's picture. So this one is held across the waits for the display service; only other dumps
// wait for it.
FairMutex capture_mutex;

void request_dump(uint8_t side) REQUIRES(capture_mutex) {
  if (side == kDumpInput) property_set(kInputDumpProperty, "1");
  if (side == kDumpOutput) property_set(kOutputDumpProperty, "1");
  wait_whole(kRedrawDelay);
  PQTuningUtils::updateUI();
  wait_whole(kDumpWait);
}

struct Dump {
  TextPtr bytes;
  unsigned long size = 0;
  DumpReplyHeader header{};
};

std::optional<Dump> fetch_dump() REQUIRES(capture_mutex) {
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

std::optional<Dump> take_dump(uint8_t side) EXCLUDES(capture_mutex) {
  if (!capture_mutex.lock_unless(quit_requested)) return std::nullopt;
  const FairMutexLock lock(capture_mutex, std::adopt_lock);
  request_dump(side);
  return fetch_dump();
}

// Header and picture in one piece, since a reply is sent with one call.
std::vector<char> make_reply(const Dump& dump) {
  const auto* header = reinterpret_cast<const char*>(&dump.header);
  std::vector<char> reply;
  reply.reserve(sizeof(dump.header) + dump.size);
  reply.assign(header, header + sizeof(dump.header));
  reply.insert(reply.end(), dump.bytes.get(), dump.bytes.get() + dump.size);
  return reply;
}

}  // namespace

void send_dump(int sock, const CommandData_t& request) {
  log_debug()("3 HandlerTCPMessage dat[0] %d\n", request.dat[0]);
  std::optional<Dump> dump = take_dump(request.dat[0]);
  if (!dump) return;
  const std::vector<char> reply = make_reply(*dump);
  dump.reset();  // frees megabytes before a send that may take long
  log_error()("send ret %zd", send_all(sock, reply));
}

}  // namespace pq
