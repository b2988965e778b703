// Counts the program's heap use. Works only in programs that link heap.cpp, which replaces the C
// library's entry points.
#ifndef BENCH_HEAP_H_
#define BENCH_HEAP_H_

#include <cstddef>
#include <functional>

namespace bench {

struct HeapUse {
  size_t allocations = 0;  // calls of malloc, calloc and realloc
  size_t peak_growth = 0;  // bytes, above what was in use before
};

HeapUse measure_heap(const std::function<void()>& run);

}  // namespace bench

#endif  // BENCH_HEAP_H_
