// Prints the operations' use of the heap, one line each: "NAME <tab> allocations <tab> the floor's
// <tab> peak growth in bytes".
#include <cstdio>

#include "bench/heap.h"
#include "bench/operations.h"

namespace {

// The first run is not typical and is not counted.
bench::HeapUse measure(const bench::Way& way) {
  way.run();
  return bench::measure_heap(way.run);
}

}  // namespace

int main() {
  const bench::Documents documents = bench::create_documents();
  for (const bench::Operation& operation : bench::make_operations(documents)) {
    operation.prepare();
    const bench::HeapUse ours = measure(operation.ours);
    const bench::HeapUse floor = measure(operation.floor);
    std::printf("%s\t%zu\t%zu\t%zu\n", operation.name.c_str(), ours.allocations, floor.allocations,
                ours.peak_growth);
  }
  return 0;
}
