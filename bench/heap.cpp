#include "bench/heap.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* old, size_t size);
void __libc_free(void* block);
}

namespace bench {
namespace {

size_t in_use = 0;
size_t most_in_use = 0;
size_t allocations = 0;

void* note_new(void* block) {
  ++allocations;
  in_use += malloc_usable_size(block);
  most_in_use = std::max(most_in_use, in_use);
  return block;
}

void note_gone(void* block) {
  in_use -= malloc_usable_size(block);
}

}  // namespace

HeapUse measure_heap(const std::function<void()>& run) {
  const size_t before = in_use;
  allocations = 0;
  most_in_use = in_use;
  run();
  return {allocations, most_in_use - before};
}

}  // namespace bench

// Not thread-safe: the measured code starts no threads.
extern "C" {

void* malloc(size_t size) {
  return bench::note_new(__libc_malloc(size));
}

void* calloc(size_t count, size_t size) {
  return bench::note_new(__libc_calloc(count, size));
}

void* realloc(void* old, size_t size) {
  bench::note_gone(old);
  return bench::note_new(__libc_realloc(old, size));
}

void free(void* block) {
  bench::note_gone(block);
  __libc_free(block);
}

}  // extern "C"
