#include "j2s/report.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace j2s {
namespace {

// The parts of the library as its messages name them.
const char* source_name(Origin::Source source) {
  return source == Origin::Source::kMapping ? "j2s/j2s" : "j2s/j2s_utils";
}

// One fprintf a line, so that lines of several threads don't mix. Keeps errno: callers tell by it
// why something failed.
[[gnu::format(printf, 3, 0)]] void report(const char* severity, const Origin& origin,
                                          const char* format, va_list arguments) {
  const int saved_errno = errno;
  char* message = nullptr;
  const bool formatted = vasprintf(&message, format, arguments) >= 0;
  std::fprintf(stderr, "%s: %s(%d) [%s]: %s\n", severity, source_name(origin.source), origin.line,
               origin.function, formatted ? message : format);
  if (formatted) std::free(message);
  errno = saved_errno;
}

}  // namespace

void report_error(Origin origin, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  report("E", origin, format, arguments);
  va_end(arguments);
}

void report_warning(Origin origin, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  report("W", origin, format, arguments);
  va_end(arguments);
}

void report_assertion(Origin origin, const char* what) {
  report_error(origin, "debug assertion failure (%s)", what);
}

}  // namespace j2s
