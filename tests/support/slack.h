// Extra time for real-time bounds in slow builds: under a sanitizer, or on an emulated processor.
#ifndef TESTS_SUPPORT_SLACK_H_
#define TESTS_SUPPORT_SLACK_H_

#include <chrono>

#if defined(__SANITIZE_THREAD__)
inline constexpr std::chrono::milliseconds kSlack{10000};
#elif defined(__SANITIZE_ADDRESS__) || defined(PQ_EMULATED)
inline constexpr std::chrono::milliseconds kSlack{5000};
#else
inline constexpr std::chrono::milliseconds kSlack{0};
#endif

#endif  // TESTS_SUPPORT_SLACK_H_
