#include "base/wait.h"

#include <cerrno>
#include <ctime>

namespace pq {

void wait_whole(std::chrono::milliseconds time) {
  constexpr long kNanosecondsPerSecond = 1'000'000'000;
  timespec end{};
  clock_gettime(CLOCK_MONOTONIC, &end);
  end.tv_sec += static_cast<time_t>(time.count() / 1000);
  end.tv_nsec += static_cast<long>(time.count() % 1000) * 1'000'000;
  if (end.tv_nsec >= kNanosecondsPerSecond) {
    end.tv_nsec -= kNanosecondsPerSecond;
    ++end.tv_sec;
  }
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
  }
}

}  // namespace pq
