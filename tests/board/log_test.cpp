// The board's log: what a line looks like and how it is written.
#include <android/log.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <string>

namespace {

// Standard error becomes a socket that keeps the borders between writes.
class Log : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(0, ::socketpair(AF_UNIX, SOCK_SEQPACKET, 0, sockets_.data()));
    saved_ = ::dup(STDERR_FILENO);
    ::dup2(sockets_[1], STDERR_FILENO);
  }
  void TearDown() override {
    ::dup2(saved_, STDERR_FILENO);
    for (const int descriptor : {saved_, sockets_[0], sockets_[1]})
      ::close(descriptor);
  }

  std::string next_write() const {
    std::array<char, 8192> buffer{};
    const ssize_t size = ::recv(sockets_[0], buffer.data(), buffer.size(), MSG_DONTWAIT);
    return {buffer.data(), static_cast<size_t>(size > 0 ? size : 0)};
  }
  // Without the time, whose form is checked here.
  std::string next_line() const {
    const std::string line = next_write();
    const std::string form = "00:00:00.000 ";
    for (size_t i = 0; i < form.size(); ++i) {
      const char expected = form[i];
      const char found = i < line.size() ? line[i] : '\0';
      EXPECT_TRUE(expected == '0' ? isdigit(found) : found == expected) << line;
    }
    return line.size() > form.size() ? line.substr(form.size()) : "";
  }

 private:
  std::array<int, 2> sockets_{};
  int saved_ = -1;
};

TEST_F(Log, ShowsEveryPriority) {
  const std::string letters = "VDIWEF";
  for (int i = 0; i < static_cast<int>(letters.size()); ++i) {
    EXPECT_GT(__android_log_write(ANDROID_LOG_VERBOSE + i, "aiqtool", "text"), 0);
    EXPECT_EQ(letters.substr(static_cast<size_t>(i), 1) + " aiqtool: text\n", next_line());
  }
  __android_log_write(99, "aiqtool", "text");
  EXPECT_EQ("? aiqtool: text\n", next_line());
}

TEST_F(Log, HasNoTagWhereNoneIsGiven) {
  __android_log_print(ANDROID_LOG_ERROR, nullptr, "%s %d", "set gamma", -22);
  EXPECT_EQ("E set gamma -22\n", next_line());
}

TEST_F(Log, EndsALineOnceWhateverTheTextBrings) {
  for (const char* text : {"text", "text\n", "text\n\n"}) {
    __android_log_write(ANDROID_LOG_INFO, "t", text);
    EXPECT_EQ("I t: text\n", next_line());
  }
  __android_log_write(ANDROID_LOG_INFO, "t", "");
  EXPECT_EQ("I t: \n", next_line());
  __android_log_write(ANDROID_LOG_INFO, "t", "one\ntwo");
  EXPECT_EQ("I t: one\ntwo\n", next_line());
}

TEST_F(Log, CutsLongTexts) {
  const std::string text(5000, 'x');
  const std::string expected = "I t: " + text.substr(0, 1023) + "\n";
  __android_log_write(ANDROID_LOG_INFO, "t", text.c_str());
  EXPECT_EQ(expected, next_line());
  __android_log_print(ANDROID_LOG_INFO, "t", "%s", text.c_str());
  EXPECT_EQ(expected, next_line());
}

TEST_F(Log, SaysWhenALineCouldNotBeWritten) {
  ::close(STDERR_FILENO);
  EXPECT_LT(__android_log_write(ANDROID_LOG_INFO, "t", "text"), 0);
}

}  // namespace
