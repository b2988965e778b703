// liblog. Lines are formatted, so that their arguments are read, and thrown away.
#include <android/log.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>

int __android_log_print(int /*priority*/, const char* /*tag*/, const char* format, ...) {
  std::array<char, 1200> line;
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(line.data(), line.size(), format, arguments);
  va_end(arguments);
  return length;
}

int __android_log_write(int /*priority*/, const char* /*tag*/, const char* text) {
  return static_cast<int>(std::strlen(text)) + 1;
}
