// Command packets: patterns, pattern mode, dumps.
#include <dirent.h>

#include <fstream>

#include "scenario/daemon_test.h"

namespace scenario {
namespace {

using namespace std::chrono_literals;

constexpr uint16_t kDump = 2;
constexpr uint16_t kPattern = 3;
constexpr uint16_t kPatternMode = 4;

class Commands : public DaemonTest {
 protected:
  static std::string acknowledgement(uint16_t command) {
    std::string bytes("QXISP-AS");
    bytes.resize(72);
    bytes[10] = static_cast<char>(command);
    bytes[20] = bytes[22] = 1;
    return bytes;
  }
  int dci_enable() {
    const auto answer = client().query_pq("/dci");
    return static_cast<int>(cJSON_GetNumberValue(cJSON_GetObjectItem(answer.value, "dciEnable")));
  }
  // Children of the daemon that were not reaped.
  int zombies() {
    std::ifstream children("/proc/" + std::to_string(board().daemon_pid()) + "/task/" +
                           std::to_string(board().daemon_pid()) + "/children");
    int count = 0;
    for (int child = 0; children >> child;) {
      std::ifstream status("/proc/" + std::to_string(child) + "/stat");
      const std::string line{std::istreambuf_iterator<char>(status), {}};
      if (line.find(") Z ") != std::string::npos) ++count;
    }
    return count;
  }
};

TEST_F(Commands, PatternShowsAColourAndIsAcknowledgedAfterTwoSeconds) {
  start_with_documents();
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(command(kPattern, {255, 0, 128}), acknowledgement(kPattern));
  EXPECT_GE(std::chrono::steady_clock::now() - start, 2s);
  EXPECT_EQ(board().calls(),
            std::vector<std::string>{"am start -n com.qx.patterntool/com.qx.patterntool.Display "
                                     "--ei red 255 --ei green 0 --ei blue 128"});
  EXPECT_EQ(zombies(), 0);
}

TEST_F(Commands, PatternModeSwitchesDciOffAndBackOn) {
  start_with_documents();
  change(R"({"op":"replace","path":"/dci/dciEnable","value":1})");
  ASSERT_EQ(dci_enable(), 1);
  const size_t calls = board().calls().size();
  EXPECT_EQ(command(kPatternMode, {0x80}), acknowledgement(kPatternMode));
  EXPECT_EQ(dci_enable(), 0);
  EXPECT_EQ(command(kPatternMode, {0x81}), acknowledgement(kPatternMode));
  EXPECT_EQ(dci_enable(), 1);
  const std::vector<std::string> all = board().calls();
  EXPECT_EQ(std::vector<std::string>(all.begin() + static_cast<ptrdiff_t>(calls), all.end()),
            (std::vector<std::string>{"service call SurfaceFlinger 1006",
                                      "am force-stop com.qx.patterntool",
                                      "service call SurfaceFlinger 1006"}));
  EXPECT_EQ(board().property("vendor.tvinput.qxpq.timeline"), "3");
  EXPECT_EQ(zombies(), 0);
}

TEST_F(Commands, LeavingPatternModeThatWasNeverEnteredLeavesDciOff) {
  start_with_documents();
  change(R"({"op":"replace","path":"/dci/dciEnable","value":1})");
  EXPECT_EQ(command(kPatternMode, {0x81}), acknowledgement(kPatternMode));
  EXPECT_EQ(dci_enable(), 0);
}

TEST_F(Commands, UnknownOnesAreIgnored) {
  start_with_documents();
  const std::string before = board().read(kPqDocument);
  EXPECT_EQ(command(5, {0x80}, 300ms), "");
  EXPECT_EQ(command(kPatternMode, {0x7F}, 300ms), "");
  EXPECT_EQ(board().read(kPqDocument), before);
  EXPECT_TRUE(board().calls().empty());
}

TEST_F(Commands, ADumpIsSentWholeAndItsFileDeleted) {
  start_with_documents();
  constexpr size_t kSize = 5 + 1920 * 1080 * 3 / 2;  // nv12
  const std::string reply = command(kDump, {0x80}, 20s, kSize);
  ASSERT_EQ(reply.size(), kSize);
  EXPECT_EQ(reply.substr(0, 5), std::string("\x80\x07\x38\x04\x02", 5));
  EXPECT_FALSE(
      std::filesystem::exists(board().file("/data/vendor/qxalgo/pq_dump_in_1920x1080.nv12")));
  EXPECT_EQ(board().property("vendor.tvinput.qxpq.dump.path"), "");
}

}  // namespace
}  // namespace scenario
