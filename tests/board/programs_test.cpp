// The board's am: what it does to the screen.
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "board/board_files_test.h"

namespace {

class Programs : public BoardFilesTest {
 protected:
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

}  // namespace
