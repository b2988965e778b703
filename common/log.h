// The daemon's log: one line a call, written through the Android log.
//
// Thread rule: everything here may be called from any thread at any time.
#ifndef COMMON_LOG_H_
#define COMMON_LOG_H_

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
  LogLine(const char* tag, const char* source, int line, Priority priority, int level_needed)
      : tag_(tag), source_(source), line_(line), priority_(priority), level_(level_needed) {}

  // Writes "source:line - text" when the log level allows it. Reports no failure: a log that can't
  // be written must not change what the daemon does. Keeps errno.
  void operator()(const char* format, ...) const __attribute__((format(printf, 2, 3)));

  // The line as it would be written, empty when the log level forbids it: for a caller that must
  // not format at the moment of writing.
  LogText text(const char* format, ...) const __attribute__((format(printf, 2, 3)));

 private:
  bool enabled() const { return log_level.load(std::memory_order_relaxed) >= level_; }

  const char* tag_;
  const char* source_;
  int line_;
  Priority priority_;
  int level_;
};

// The log of one area of the daemon. Use: `kLog.debug()("socket recvieve length: %d\n", length)`.
class Log {
 public:
  // source: what stands in front of the line number. It is the area's main source file, without
  // extension, even where the area has grown to several files: people filter logs by it.
  // tag: null for none.
  constexpr explicit Log(const char* source, const char* tag = "aiqtool")
      : source_(source), tag_(tag) {}

  // line: the caller's, which a default argument sees (std::source_location is not in every clang
  // that builds this).
  LogLine error(int line = __builtin_LINE()) const {
    return {tag_, source_, line, Priority::kError, 0};
  }
  LogLine info(int line = __builtin_LINE()) const {
    return {tag_, source_, line, Priority::kInfo, 2};
  }
  LogLine debug(int line = __builtin_LINE()) const {
    return {tag_, source_, line, Priority::kDebug, 3};
  }

 private:
  const char* source_;
  const char* tag_;
};

// A line of the display modules: no tag, no prefix, written whatever the log level. They talk to
// closed parts of the board, and integrators want to see what those answered even in a silent log.
void log_display(Priority priority, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace pq

#endif  // COMMON_LOG_H_
