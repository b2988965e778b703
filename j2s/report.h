// Messages of the mapping library: single lines on standard error.
#ifndef J2S_REPORT_H_
#define J2S_REPORT_H_

namespace j2s {

// Where a message comes from. The function is the public one by whose name users know the step.
struct Origin {
  enum class Source { kMapping, kUtilities };

  // Implicit, so that a call site names the function alone and the line is the call site's.
  constexpr Origin(const char* the_function, int the_line = __builtin_LINE())
      : Origin(Source::kMapping, the_function, the_line) {}
  constexpr Origin(Source the_source, const char* the_function, int the_line = __builtin_LINE())
      : source(the_source), function(the_function), line(the_line) {}

  Source source;
  const char* function;
  int line;
};

// "E: FILE(LINE) [FUNCTION]: MESSAGE", or with "W". The newline is added.
[[gnu::format(printf, 2, 3)]] void report_error(Origin origin, const char* format, ...);
[[gnu::format(printf, 2, 3)]] void report_warning(Origin origin, const char* format, ...);

// `what`: the thing that should have been there, usually what could not be allocated.
void report_assertion(Origin origin, const char* what);

}  // namespace j2s

#endif  // J2S_REPORT_H_
