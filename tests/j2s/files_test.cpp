#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/j2s/synthetic.h"

namespace j2s_test {
namespace {

class Files : public testing::Test {
 protected:
  Files() : path_(testing::TempDir() + "j2s_files_" + std::to_string(getpid())) {}
  ~Files() override { (void)remove(path_.c_str()); }

  // The only line that a failed read logs; the size must stay unchanged.
  static std::string complaint_about(const char* path) {
    size_t size = 123;
    const std::string message = stderr_of([&] { EXPECT_EQ(j2s_read_file(path, &size), nullptr); });
    EXPECT_EQ(size, 123U);
    EXPECT_TRUE(message.starts_with("E: j2s/j2s_utils(")) << message;
    const size_t start = message.find(") [j2s_read_file]: ");
    return start == std::string::npos ? message : message.substr(start + 19);
  }

  std::string path_;
};

TEST_F(Files, SavedTextIsReadBackWhole) {
  for (const std::string text : {"a longer text", "short", ""}) {
    EXPECT_EQ(j2s_save_file(path_.c_str(), text.c_str()), static_cast<int>(text.size()));
    size_t size = 123;
    const std::unique_ptr<char, decltype(&std::free)> content(j2s_read_file(path_.c_str(), &size),
                                                              &std::free);
    ASSERT_NE(content, nullptr);
    EXPECT_EQ(size, text.size());
    EXPECT_EQ(std::string(content.get()), text);
  }
}

TEST_F(Files, ReadingSaysWhatIsWrong) {
  EXPECT_EQ(complaint_about(nullptr), "no such file: '<null>'\n");
  EXPECT_EQ(complaint_about(path_.c_str()), "no such file: '" + path_ + "'\n");
  EXPECT_EQ(complaint_about("/"), "failed to read: '/'\n");
  EXPECT_EQ(complaint_about("/dev/zero"), "failed to open: '/dev/zero'\n");
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);  // would make a reader wait for ever
  EXPECT_EQ(complaint_about(path_.c_str()), "failed to open: '" + path_ + "'\n");
}

TEST_F(Files, SavingFailsSilently) {
  EXPECT_EQ(stderr_of([&] {
              EXPECT_EQ(j2s_save_file("/no/such/folder/file", "x"), -1);
              EXPECT_EQ(j2s_save_file(path_.c_str(), nullptr), -1);
              EXPECT_EQ(j2s_save_file("/dev/full", "x"), -1);
            }),
            "");
}

}  // namespace
}  // namespace j2s_test
