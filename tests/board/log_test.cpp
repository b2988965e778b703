// What the board's log keeps of the daemon's texts.
#include <android/log.h>
#include <gtest/gtest.h>

#include <string>

namespace {

// The line of one text, without the time.
std::string line_of(const std::string& text) {
  testing::internal::CaptureStderr();
  __android_log_print(ANDROID_LOG_INFO, "t", "%s", text.c_str());
  __android_log_write(ANDROID_LOG_INFO, "t", text.c_str());
  const std::string printed = testing::internal::GetCapturedStderr();
  const std::string line = printed.substr(0, printed.size() / 2);
  constexpr size_t kTime = 13;
  EXPECT_EQ(printed.substr(line.size() + kTime), line.substr(kTime)) << "both calls keep the same";
  return line.substr(kTime);
}

TEST(Log, EndsALineOnceAndCutsALongText) {
  for (const char* text : {"text", "text\n", "text\n\n"})
    EXPECT_EQ("I t: text\n", line_of(text));
  EXPECT_EQ("I t: \n", line_of(""));
  EXPECT_EQ("I t: one\ntwo\n", line_of("one\ntwo"));
  EXPECT_EQ("I t: " + std::string(1023, 'x') + "\n", line_of(std::string(5000, 'x')));
}

}  // namespace
