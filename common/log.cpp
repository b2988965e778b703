#include "common/log.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>

#include <android/log.h>

namespace pq {
namespace {

// The calls around a log line go on to test errno.
class KeepErrno {
 public:
  KeepErrno() = default;
  ~KeepErrno() { errno = saved_; }
  KeepErrno(const KeepErrno&) = delete;
  KeepErrno& operator=(const KeepErrno&) = delete;

 private:
  int saved_ = errno;
};

[[gnu::format(printf, 1, 0)]] LogText format_text(const char* format, va_list arguments) {
  LogText text;
  text[0] = '\0';
  std::vsnprintf(text.data(), text.size(), format, arguments);
  return text;
}

}  // namespace

void LogLine::operator()(const char* format, ...) const {
  if (!enabled()) return;
  const KeepErrno keep_errno;
  va_list arguments;
  va_start(arguments, format);
  const LogText text = format_text(format, arguments);
  va_end(arguments);
  __android_log_print(static_cast<int>(priority_), tag_, "%s:%d - %s", source_, line_, text.data());
}

LogText LogLine::text(const char* format, ...) const {
  LogText line{};
  if (!enabled()) return line;
  const int prefix = std::snprintf(line.data(), line.size(), "%s:%d - ", source_, line_);
  if (prefix < 0 || static_cast<size_t>(prefix) >= line.size()) return line;
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line.data() + prefix, line.size() - static_cast<size_t>(prefix), format,
                 arguments);
  va_end(arguments);
  return line;
}

void log_display(Priority priority, const char* format, ...) {
  const KeepErrno keep_errno;
  va_list arguments;
  va_start(arguments, format);
  const LogText text = format_text(format, arguments);
  va_end(arguments);
  __android_log_print(static_cast<int>(priority), nullptr, "%s", text.data());
}

}  // namespace pq
