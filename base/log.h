// The daemon's log: one line a call, written through the Android log.
//
// Thread rule: everything here may be called from any thread at any time.
#ifndef BASE_LOG_H_
#define BASE_LOG_H_

#include <array>
#include <atomic>
#include <cstdint>

namespace pq {

enum class Priority { kDebug = 3, kInfo = 4, kWarning = 5, kError = 6 };  // as <android/log.h>

// Process-wide log level. Errors are written at 0 or more, info lines at 2 or more, debug lines at
// 3 or more; a negative level silences everything but the display modules.
inline std::atomic<int32_t> log_level = 5;

inline bool debug_enabled() {
  return log_level.load(std::memory_order_relaxed) >= 3;
}

// One log text. Android cuts a line at 1,023 bytes, so there is no point in room for more.
using LogText = std::array<char, 1024>;

// A line about to be written; called like printf with the line's text.
class LogLine {
 public:
  // tag: a text constant, or null for none.
  LogLine(const char* tag, Priority priority, int level_needed, const char* file, int line)
      : tag_(tag), file_(file), line_(line), priority_(priority), level_(level_needed) {}

  // Writes "source:line - text" when the log level allows it. Reports no failure: a log that cannot
  // be written must not change what the daemon does. Control characters come out escaped ("\x1b"),
  // so that a client's text can neither forge a line nor drive a terminal; a newline at the end
  // stays. Keeps errno.
  void operator()(const char* format, ...) const __attribute__((format(printf, 2, 3)));

  // The line as it would be written, empty when the log level forbids it: for a caller that must
  // not format at the moment of writing.
  LogText text(const char* format, ...) const __attribute__((format(printf, 2, 3)));

 private:
  [[nodiscard]] bool enabled() const { return log_level.load(std::memory_order_relaxed) >= level_; }

  const char* tag_;
  const char* file_;
  int line_;
  Priority priority_;
  int level_;
};

inline constexpr char kLogTag[] = "aiqtool";

// The daemon's log. Use: `log_debug()("socket recvieve length: %d\n", length)`.
// Each line begins with the source file of the call, as the path from the top of the project
// without extension, and the line number: "qxaiq/pq_update:45 - ApplyPatches ret 0 ".
//
// The call has two steps because default arguments take the caller's place, and a variadic function
// cannot have any after its arguments. (Android's library has no std::source_location.)
inline LogLine log_error(const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  return {kLogTag, Priority::kError, 0, file, line};
}
inline LogLine log_info(const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  return {kLogTag, Priority::kInfo, 2, file, line};
}
inline LogLine log_debug(const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  return {kLogTag, Priority::kDebug, 3, file, line};
}

// The same without a tag, for the programs that the daemon starts.
inline LogLine log_debug_untagged(const char* file = __builtin_FILE(),
                                  int line = __builtin_LINE()) {
  return {nullptr, Priority::kDebug, 3, file, line};
}

// A line of the display modules: no tag, no prefix, written whatever the log level. They talk to
// closed parts of the board, and integrators want to see what those answered even in a silent log.
// They are written at error priority unless they say otherwise.
void log_display(const char* format, ...) __attribute__((format(printf, 1, 2)));
void log_display(Priority priority, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace pq

#endif  // BASE_LOG_H_
