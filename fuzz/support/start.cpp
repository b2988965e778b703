// The start of a target's process, and its end after a failed check.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "fuzz/support/check.h"
#include "fuzz/support/documents.h"

namespace fuzz {
namespace {

// The fuzzer closes standard error, but the mapping library reports there.
int message_fd = STDERR_FILENO;

}  // namespace

void require(bool holds, const char* what) {
  if (holds) return;
  dprintf(message_fd, "==fuzz== does not hold: %s\n", what);
  std::abort();
}

}  // namespace fuzz

// Short allocation stacks make everything faster; two frames are the minimum at which a leak is
// detected. fuzz/run --finding shows long stacks.
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
