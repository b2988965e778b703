// libboardclock.so: preloaded where a test has no time to spare. It stands before the C library's
// clock_nanosleep and sleeps the part of the time that BOARD_HURRY says: 50 makes a wait of 2
// seconds one of 40 ms. Only waits get shorter; every clock still tells the true time.
//
// Works without the rest of the board, too: LD_PRELOAD=.../libboardclock.so BOARD_HURRY=50 PROGRAM.
#include <dlfcn.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>

namespace {

using ClockNanosleep = int (*)(clockid_t, int, const timespec*, timespec*);

constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;

double read_factor() {
  const char* text = std::getenv("BOARD_HURRY");
  const double factor = text != nullptr ? std::strtod(text, nullptr) : 1.0;
  return factor >= 1.0 ? factor : 1.0;
}

// Both are found while the library is loaded: a look-up later, in a child just forked from a
// threaded process, could wait for ever for the loader's lock.
const double g_factor = read_factor();
const auto g_next = reinterpret_cast<ClockNanosleep>(dlsym(RTLD_NEXT, "clock_nanosleep"));

int64_t to_nanoseconds(const timespec& time) {
  return int64_t{time.tv_sec} * kNanosecondsPerSecond + time.tv_nsec;
}

timespec to_timespec(int64_t nanoseconds) {
  return {nanoseconds / kNanosecondsPerSecond, nanoseconds % kNanosecondsPerSecond};
}

timespec hurried(int64_t nanoseconds) {
  return to_timespec(static_cast<int64_t>(static_cast<double>(nanoseconds) / g_factor));
}

}  // namespace

// An absolute wait ends when the same part of what is left now has passed: waiting anew for the
// same end, as after a signal, then still takes no longer than the whole part.
extern "C" int clock_nanosleep(clockid_t clock, int flags, const timespec* wanted,
                               timespec* remaining) {
  const bool absolute = (flags & TIMER_ABSTIME) != 0;
  timespec now{};
  if (absolute && clock_gettime(clock, &now) != 0) return g_next(clock, flags, wanted, remaining);
  const int64_t time = to_nanoseconds(*wanted) - to_nanoseconds(now);
  const bool invalid = wanted->tv_nsec < 0 || wanted->tv_nsec >= kNanosecondsPerSecond;
  if (invalid || time <= 0) return g_next(clock, flags, wanted, remaining);
  const timespec shorter = hurried(time);
  if (!absolute) return g_next(clock, flags, &shorter, remaining);
  const timespec end = to_timespec(to_nanoseconds(now) + to_nanoseconds(shorter));
  return g_next(clock, flags, &end, nullptr);
}
