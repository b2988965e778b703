// The C heap: finding out that it ran out, and returning freed memory to the system.
#ifndef BASE_MEMORY_H_
#define BASE_MEMORY_H_

#include <cstddef>

namespace pq {

// --- Lack of memory ----------------------------------------------------------------------------
//
// cJSON and the mapping library report lack of memory like any other failure, or leave out what
// they have no memory for. So they allocate through these two, which note on their thread that they
// failed. As malloc and strndup otherwise; free() releases the result.
[[nodiscard]] void* noting_malloc(size_t size);
[[nodiscard]] char* noting_strndup(const char* text, size_t max_length);

// Tells whether one of them has failed on this thread in the watch's life.
class AllocationWatch {
 public:
  AllocationWatch();
  [[nodiscard]] bool failed() const;
  void throw_if_failed() const;  // std::bad_alloc

 private:
  size_t failures_before_;
};

// --- Memory that is not in use -----------------------------------------------------------------
//
// A large document takes megabytes for a moment; without these calls each thread's heap would keep
// them as long as the daemon runs.

// Lets all threads share one heap, where the C library would make one for each. To be called before
// there is a second thread.
void share_one_heap();

// Gives freed memory back to the system. Takes milliseconds, during which other threads may wait
// for memory.
void release_unused_memory();

}  // namespace pq

#endif  // BASE_MEMORY_H_
