// The board that the stand-ins of the platform's libraries pretend to be.
#ifndef BENCH_BOARD_PLATFORM_H_
#define BENCH_BOARD_PLATFORM_H_

namespace bench {

inline constexpr char kPlatform[] = "qxt200";
inline constexpr int kPlatformNumber = 1;

}  // namespace bench

#endif  // BENCH_BOARD_PLATFORM_H_
