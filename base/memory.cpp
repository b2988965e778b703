#include "base/memory.h"

#include <malloc.h>

namespace pq {

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
