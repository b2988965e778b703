// The board's am and service: what they do to the screen and what they write down.
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "board/board_files_test.h"

namespace {

class Programs : public BoardFilesTest {
 protected:
  Programs() { std::filesystem::remove(folder() / "calls"); }

  static int run(const std::string& command_line) {
    const std::string quiet = " >/dev/null 2>&1";
    return WEXITSTATUS(std::system((PROGRAM_FOLDER "/" + command_line + quiet).c_str()));
  }
  static std::string content(const char* file) {
    std::ifstream stream(folder() / file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
  }
  // Without the times.
  static std::string calls() {
    std::istringstream record(content("calls"));
    std::string lines;
    for (std::string line; std::getline(record, line);)
      lines += line.substr(13) + "\n";
    return lines;
  }
};

constexpr const char* kStart = "am start -n com.qx.patterntool/com.qx.patterntool.Display";

TEST_F(Programs, ShowAndCloseThePattern) {
  EXPECT_EQ(0, run(std::string(kStart) + " --ei red 255 --ei green 128 --ei blue 0"));
  EXPECT_EQ("255 128 0", content("screen/pattern"));
  EXPECT_EQ(0, run("am force-stop com.other.app"));
  EXPECT_EQ("255 128 0", content("screen/pattern"));
  EXPECT_EQ(0, run("am force-stop com.qx.patterntool"));
  EXPECT_FALSE(std::filesystem::exists(folder() / "screen/pattern"));
}

TEST_F(Programs, CountRedraws) {
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(0, run("service call SurfaceFlinger 1006"));
  EXPECT_EQ(0, run("service call SurfaceFlinger 1008"));
  EXPECT_EQ("3", content("screen/redraw"));
}

TEST_F(Programs, RefuseWhatTheBoardDoesNotHave) {
  EXPECT_NE(0, run("am start -n com.other/.App"));
  EXPECT_NE(0, run(std::string(kStart) + " --user"));
  EXPECT_NE(0, run("am"));
  EXPECT_NE(0, run("service call Other 1006"));
  EXPECT_NE(0, run("service list"));
  EXPECT_FALSE(std::filesystem::exists(folder() / "screen/pattern"));
  EXPECT_FALSE(std::filesystem::exists(folder() / "screen/redraw"));
}

TEST_F(Programs, WriteDownEveryCall) {
  run("service call SurfaceFlinger 1006");
  run("am force-stop 'a b' '' '\"'");
  EXPECT_EQ("service call SurfaceFlinger 1006\nam force-stop \"a b\" \"\" \"\\\"\"\n", calls());
}

TEST_F(Programs, GetAndSetProperties) {
  EXPECT_EQ(0, run("setprop vendor.a b"));
  EXPECT_EQ("b", content("properties/vendor.a"));
  EXPECT_NE(0, run("setprop 'vendor a' b"));
  EXPECT_EQ(0, run("getprop vendor.a | grep -x b"));
  EXPECT_EQ(0, run("getprop vendor.none default | grep -x default"));
  EXPECT_EQ(0, run("getprop | grep -Fx '[vendor.a]: [b]'"));
}

}  // namespace
