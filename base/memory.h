// Returns freed memory to the system. A large document takes megabytes for a moment; without these
// calls each thread's heap would keep them as long as the daemon runs.
#ifndef BASE_MEMORY_H_
#define BASE_MEMORY_H_

namespace pq {

// Lets all threads share one heap, where the C library would make one for each. To be called before
// there is a second thread.
void share_one_heap();

// Gives freed memory back to the system. Takes milliseconds, during which other threads may wait
// for memory.
void release_unused_memory();

}  // namespace pq

#endif  // BASE_MEMORY_H_
