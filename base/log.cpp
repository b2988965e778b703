#include "base/log.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

#include <android/log.h>

namespace pq {
namespace {

// Callers test errno after a log line.
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

bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

// Writes each control character but a newline at the end as "\xNN"; drops what no longer fits.
void escape_controls(LogText& text) {
  constexpr size_t kEscapeLength = sizeof("\\x00") - 1;
  const LogText plain = text;
  const size_t length = std::strlen(plain.data());
  size_t end = 0;
  for (size_t i = 0; i < length; ++i) {
    const bool kept = !is_control(plain[i]) || (plain[i] == '\n' && i + 1 == length);
    if (end + (kept ? 1 : kEscapeLength) >= text.size()) break;
    if (kept) {
      text[end++] = plain[i];
    } else {
      std::snprintf(&text[end], kEscapeLength + 1, "\\x%02x", static_cast<unsigned char>(plain[i]));
      end += kEscapeLength;
    }
  }
  text[end] = '\0';
}

[[gnu::format(printf, 1, 0)]] LogText format_line(const char* format, va_list arguments) {
  LogText text = format_text(format, arguments);
  escape_controls(text);
  return text;
}

struct SourceName {
  const char* start;
  int length;
};

// "qxaiq/pq_update" of ".../qxaiq/pq_update.cpp". The compiler may be given paths from
// another folder than the project's top (Android's build uses the tree's root). The path of this
// file shows the length of that prefix.
SourceName source_name(const char* file) {
  constexpr std::string_view kThisFile = "base/log.cpp";
  constexpr size_t kTopLength = std::string_view(__FILE__).size() - kThisFile.size();
  const std::string_view path(file);
  const size_t start = path.size() > kTopLength ? kTopLength : 0;
  const size_t extension = path.rfind('.');
  const size_t end =
      extension == std::string_view::npos || extension < start ? path.size() : extension;
  return {file + start, static_cast<int>(end - start)};
}

}  // namespace

void LogLine::operator()(const char* format, ...) const {
  if (!enabled()) return;
  const KeepErrno keep_errno;
  va_list arguments;
  va_start(arguments, format);
  const LogText text = format_line(format, arguments);
  va_end(arguments);
  const SourceName source = source_name(file_);
  __android_log_print(static_cast<int>(priority_), tag_, "%.*s:%d - %s", source.length,
                      source.start, line_, text.data());
}

LogText LogLine::text(const char* format, ...) const {
  LogText line{};
  if (!enabled()) return line;
  va_list arguments;
  va_start(arguments, format);
  const LogText text = format_line(format, arguments);
  va_end(arguments);
  const SourceName source = source_name(file_);
  const int prefix =
      std::snprintf(line.data(), line.size(), "%.*s:%d - ", source.length, source.start, line_);
  if (prefix < 0) return {};
  std::snprintf(line.data() + prefix, line.size() - static_cast<size_t>(prefix), "%s", text.data());
  return line;
}

namespace {

void write_display_line(Priority priority, const LogText& text) {
  __android_log_print(static_cast<int>(priority), nullptr, "%s", text.data());
}

}  // namespace

void log_display(const char* format, ...) {
  const KeepErrno keep_errno;
  va_list arguments;
  va_start(arguments, format);
  const LogText text = format_line(format, arguments);
  va_end(arguments);
  write_display_line(Priority::kError, text);
}

void log_display(Priority priority, const char* format, ...) {
  const KeepErrno keep_errno;
  va_list arguments;
  va_start(arguments, format);
  const LogText text = format_line(format, arguments);
  va_end(arguments);
  write_display_line(priority, text);
}

}  // namespace pq
