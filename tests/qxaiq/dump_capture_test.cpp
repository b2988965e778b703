// Dump names that lead nowhere; real dumps are tested on the simulated board.
#include "qxaiq/dump_capture.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/temporary_folder.h"

namespace {

class DumpFile : public testing::Test {
 protected:
  std::string file(const char* name, const std::string& content) const {
    folder_.write(name, content);
    return folder_.path() / name;
  }
  static int info(std::string path) {
    int width = 0;
    int height = 0;
    int format = 0;
    return get_dump_info(path.data(), &width, &height, &format);
  }

  TemporaryFolder folder_;
};

TEST_F(DumpFile, ThatIsMissingIsTellableFromOneWithAWrongName) {
  EXPECT_EQ(info("/data/vendor/qxalgo/pq_dump_in_1x1.rgb"), -2);
  EXPECT_EQ(info(folder_.path() / "missing"), -2);
  EXPECT_EQ(info(file("pq_dump_in_1x1.rgb", "abc")), -1);
}

TEST_F(DumpFile, IsReadWholeAndDeleted) {
  std::string path = file("dump", std::string("a\0b", 3));
  unsigned long size = 0;
  char* bytes = getPqDumpData(path.data(), &size);
  EXPECT_EQ(std::string(bytes, size), std::string("a\0b", 3));
  std::free(bytes);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(DumpFile, ThatIsEmptyIsDeletedAndHasNoSize) {
  std::string path = file("dump", "");
  unsigned long size = 99;
  std::free(getPqDumpData(path.data(), &size));
  EXPECT_EQ(size, 0U);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(DumpFile, IsNeverReadThroughALinkNorFromAPipe) {
  const std::string secret = file("secret", "secret");
  std::string link = folder_.path() / "link";
  std::filesystem::create_symlink(secret, link);
  std::string pipe = folder_.path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  unsigned long size = 0;
  EXPECT_EQ(getPqDumpData(link.data(), &size), nullptr);
  EXPECT_EQ(getPqDumpData(pipe.data(), &size), nullptr);
  EXPECT_TRUE(std::filesystem::exists(secret));
  EXPECT_TRUE(std::filesystem::exists(pipe));
}

}  // namespace
