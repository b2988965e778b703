// Fixed waits. The board's programs need their time, whatever signals arrive meanwhile.
#ifndef BASE_WAIT_H_
#define BASE_WAIT_H_

#include <chrono>

namespace pq {

// Sleeps the whole time: an ended child's SIGCHLD interrupts the sleep but does not shorten it.
// Sleeps against the monotonic clock, so that setting the board's time has no effect.
void wait_whole(std::chrono::milliseconds time);

}  // namespace pq

#endif  // BASE_WAIT_H_
