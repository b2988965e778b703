#include "base/memory.h"

#include <malloc.h>

#include <cstdlib>
#include <cstring>
#include <new>

namespace pq {
namespace {

// Part of the program, never of a library that is loaded later: found without a call.
[[gnu::tls_model("initial-exec")]] thread_local size_t failures = 0;

}  // namespace

void* noting_malloc(size_t size) {
  void* block = std::malloc(size);
  if (block == nullptr) ++failures;
  return block;
}

char* noting_strndup(const char* text, size_t max_length) {
  char* copy = strndup(text, max_length);
  if (copy == nullptr) ++failures;
  return copy;
}

AllocationWatch::AllocationWatch() : failures_before_(failures) {}

bool AllocationWatch::failed() const {
  return failures != failures_before_;
}

void AllocationWatch::throw_if_failed() const {
  if (failed()) throw std::bad_alloc();
}

// Android's allocator has no heap of its own for each thread, and other names for the same.

void share_one_heap() {
#if defined(M_ARENA_MAX)
  mallopt(M_ARENA_MAX, 1);
#endif
}

void release_unused_memory() {
#if defined(M_PURGE)
  mallopt(M_PURGE, 0);
#else
  malloc_trim(0);
#endif
}

}  // namespace pq
