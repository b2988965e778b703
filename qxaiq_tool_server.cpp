// The PQ tool server: lets a tuning tool on a PC adjust the display's picture quality while the
// picture is on screen. This is its start-up, in the order that the board relies on.

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <exception>

#include <cutils/properties.h>

#include "base/log.h"
#include "base/memory.h"
#include "base/quit.h"
#include "base/wait.h"
#include "common/pq_tuning_utils.h"
#include "documents/aipq_document_creator.h"
#include "documents/document_file.h"
#include "documents/names.h"
#include "documents/pq_document_creator.h"
#include "netserver/tcp_server.h"
#include "qxaiq/qxaiq_protocol.h"
#include "startup/document_lock.h"
#include "startup/options.h"
#include "startup/signals.h"

namespace {

constexpr char kVersion[] = "1.0.8";
constexpr int32_t kPort = 5543;

// Users are promised an exit within 5 seconds; the rest is for the system, which takes back a
// gigabyte in the worst case. A dump that is being taken needs 4.2 seconds, other requests less.
constexpr std::chrono::milliseconds kShutdownTime{4500};

// The display service brings the base parameters up to date when it redraws.
constexpr std::chrono::seconds kBaseParameterWait{2};

// If descriptors 0 to 2 are closed at start, the next files we open get those numbers, and anything
// written to standard error ends up in a document or a client's socket.
void open_standard_descriptors() {
  int fd = -1;
  do {
    fd = open("/dev/null", O_RDWR);  // for the programs that we start, too
  } while (fd >= 0 && fd <= STDERR_FILENO);
  if (fd > STDERR_FILENO) close(fd);
}

// A property holding a hexadecimal number; "-1" gives -1.
int32_t read_hexadecimal(const char* property, const char* default_value) {
  std::array<char, PROPERTY_VALUE_MAX> text{};
  property_get(property, text.data(), default_value);
  constexpr int kBase = 16;
  return static_cast<int32_t>(std::strtoull(text.data(), nullptr, kBase));
}

// Only these two errors mean missing; on any other, creating a new document could overwrite the
// old.
bool is_missing(const char* path) {
  return access(path, F_OK) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

void create_pq_document(char* path) {
  PQTuningUtils::updateUI();
  pq::wait_whole(kBaseParameterWait);
  getJsonFromBaseparameter(path);
}

void create_aipq_document(char* path) {
  createDefaultAIPQJson(path);
}

// A failure here is not fatal: the daemon serves what it has and tries again at the next start.
void prepare_document(const char* path, void (*create)(char* path)) {
  try {
    (void)pq::restore_document(path);  // a failure has been logged
    if (is_missing(path)) create(const_cast<char*>(path));
  } catch (const std::exception& error) {
    pq::log_error()("cannot prepare %s: %s\n", path, error.what());
  }
}

// The documents stay whole, as they do when the daemon is killed.
[[noreturn]] void abandon_requests() {
  pq::log_error()("requests still run %.1f s after the signal: exiting without them\n",
                  std::chrono::duration<double>(kShutdownTime).count());
  _exit(EXIT_SUCCESS);
}

void serve() {
  TCPServer server;
  server.set_callback(QXAiqProtocol::HandlerTCPMessage);
  server.set_idle_callback(pq::release_unused_memory);
  (void)server.Process(kPort);  // a failure has been logged, and the server counts as stopped
  wait_for_shutdown(server);
  const auto deadline = std::chrono::steady_clock::now() + kShutdownTime;
  // Also set when the server stopped by itself, so that threads blocked in send_all() give up.
  pq::quit_requested = true;
  if (!server.stop_by(deadline)) abandon_requests();
  server.SaveExit();
  QXAiqProtocol::Exit();
}

}  // namespace

int main(int argc, char* argv[]) {
  pq::share_one_heap();
  block_signals();  // before the first line, which may be answered with a signal at once
  open_standard_descriptors();
  pq::log_error()("#### PQ tool server version: %s ####\n", kVersion);
  install_signal_handlers();
  pq::log_level = read_hexadecimal(pq::kLogLevelProperty, "5");
  // Read but without effect: part of the interface of the board's settings.
  read_hexadecimal(pq::kKillAppProperty, "1");

  Options options;
  if (!parse_options(argc, argv, options)) {
    pq::log_error()("Tool server args parse error.\n");
    return 1;
  }
  const auto document_lock = lock_documents();
  if (!document_lock) return 1;
  prepare_document(pq::kPqDocument, create_pq_document);
  prepare_document(pq::kAipqDocument, create_aipq_document);
  try {
    serve();
  } catch (const std::exception& error) {
    pq::log_error()("cannot serve: %s\n", error.what());
    return 1;
  }
  return 0;
}
