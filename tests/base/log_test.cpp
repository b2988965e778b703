#include "base/log.h"

#include <cstdarg>
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

namespace {

std::string last_line;

std::string location(int line) {
  return "tests/base/log_test:" + std::to_string(line) + " - ";
}

TEST(Log, NamesTheFileAndLineOfTheCall) {
  pq::log_error()("cannot read %s", "it");
  EXPECT_EQ(last_line, location(__LINE__ - 1) + "cannot read it");
  EXPECT_STREQ(pq::log_error().text("%d", 7).data(), (location(__LINE__) + "7").c_str());
}

TEST(Log, EscapesControlCharactersButTheLastNewline) {
  pq::log_error()("length: %d\n", 5);
  EXPECT_EQ(last_line, location(__LINE__ - 1) + "length: 5\n");
  pq::log_error()("%s", "a\nforged \x1b[31mline\x7f\n");
  EXPECT_EQ(last_line, location(__LINE__ - 1) + "a\\x0aforged \\x1b[31mline\\x7f\n");
}

TEST(Log, CutsATextThatEscapesMakeTooLong) {
  pq::log_error()("%s", std::string(1000, '\n').c_str());
  EXPECT_LT(last_line.size(), 1100U);
  EXPECT_EQ(last_line.substr(last_line.size() - 4), "\\x0a");
}

}  // namespace

// Replaces liblog's function.
extern "C" int __android_log_print(int /*priority*/, const char* /*tag*/, const char* format, ...) {
  char text[4096];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  last_line = text;
  return 1;
}
