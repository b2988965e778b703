// A process's use of memory, descriptors and threads.
#ifndef BENCH_LOAD_PROCESS_FIGURES_H_
#define BENCH_LOAD_PROCESS_FIGURES_H_

#include <sys/types.h>

#include <cstddef>
#include <string>

namespace load {

struct ProcessFigures {
  long resident_kib = 0;
  size_t descriptors = 0;
  size_t threads = 0;
};

// Throws std::runtime_error if there is no such process.
ProcessFigures read_process(pid_t process);

// False under a sanitizer, whose own bookkeeping hides the daemon's memory.
constexpr bool memory_is_comparable() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(PQ_EMULATED)
  return false;
#else
  return true;
#endif
}

std::string mebibytes(long kib);  // "12.3 MiB"

}  // namespace load

#endif  // BENCH_LOAD_PROCESS_FIGURES_H_
