#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "common/log.h"
#include "fuzz/support/board.h"
#include "fuzz/support/check.h"
#include "fuzz/support/documents.h"
#include "fuzz/support/input.h"

namespace fuzz {
namespace {

// The fuzzer closes standard error, where the mapping library reports.
int message_fd = STDERR_FILENO;

uint32_t hash(std::string_view text) {
  uint32_t value = 2166136261U;
  for (const char byte : text)
    value = (value ^ static_cast<uint8_t>(byte)) * 16777619U;
  return value ^ (value >> 16);
}

}  // namespace

void require(bool holds, const char* what) {
  if (holds) return;
  dprintf(message_fd, "==fuzz== does not hold: %s\n", what);
  std::abort();
}

std::string_view Input::line() {
  const std::string_view line = rest_.substr(0, rest_.find('\n'));
  rest_.remove_prefix(std::min(line.size() + 1, rest_.size()));
  return line;
}

void start_board(Input& input) {
  use_full_tables(hash(input.rest()) % 4096 == 0);
  const std::string_view settings = input.line();
  const int flags = settings.empty() ? 0 : settings[0] % 32;
  power_on();
  pq::log_level = (flags & 1) != 0 ? -1 : 5;
  board.programs_start = (flags & 2) == 0;
  board.properties_can_be_set = (flags & 4) == 0;
  in_process::platform.properties["ro.board.platform"] = (flags & 8) != 0 ? "none" : "qxt200";
  board.sends_are_cut = (flags & 16) != 0;
  board.failing_display_call = settings.size() < 2 ? 0 : settings[1] % 32;
}

}  // namespace fuzz

// Short memories of where blocks came from make everything faster; two callers are the fewest with
// which a leak is seen. fuzz/run --finding shows long ones.
extern "C" const char* __asan_default_options() {
  return "malloc_context_size=2:quarantine_size_mb=2:thread_local_quarantine_size_kb=64:allocator_"
         "may_return_null=1";
}

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  if (std::getenv("PQ_FUZZ_PRIVATE_ROOT") == nullptr) {
    std::fputs("this writes to /data: start it through fuzz/private-root\n", stderr);
    std::exit(2);
  }
  fuzz::message_fd = dup(STDERR_FILENO);
  setenv("J2S_NO_CACHE", "1", 1);
  fuzz::create_documents();
  return 0;
}
