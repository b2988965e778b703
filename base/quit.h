// Whether the process has been asked to end.
#ifndef BASE_QUIT_H_
#define BASE_QUIT_H_

#include <atomic>

namespace pq {

// Set when the end has come, before the threads are waited for; whoever can block for long watches
// it.
inline std::atomic<bool> quit_requested = false;

}  // namespace pq

#endif  // BASE_QUIT_H_
