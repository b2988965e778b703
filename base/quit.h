// The process-wide shutdown flag.
#ifndef BASE_QUIT_H_
#define BASE_QUIT_H_

#include <atomic>

namespace pq {

// Set at shutdown, before threads are joined. Anything that can block for long must poll it.
inline std::atomic<bool> quit_requested = false;

}  // namespace pq

#endif  // BASE_QUIT_H_
