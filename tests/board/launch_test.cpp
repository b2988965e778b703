// The launcher: what a daemon sees of a board, how it ends, and what is left of it.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "support/board_test.h"
#include "support/temporary_folder.h"

namespace board {
namespace {

namespace fs = std::filesystem;

BoardOptions stand_in(std::vector<std::string> steps, BoardOptions options = {}) {
  options.daemon = STAND_IN_DAEMON;
  options.arguments = std::move(steps);
  return options;
}

// Both ways to meet the board's paths promise the same.
class Launch : public testing::TestWithParam<Isolation> {
 protected:
  void SetUp() override {
    if (GetParam() == Isolation::kNamespace && !private_root_obstacle().empty()) {
      GTEST_SKIP() << "no private root here: " << private_root_obstacle();
    }
  }

  BoardOptions steps(std::vector<std::string> list, BoardOptions options = {}) const {
    options.isolation = GetParam();
    return stand_in(std::move(list), std::move(options));
  }
  static bool has_line(const Board& board, const std::string& text) {
    return board.log().find(" " + text + "\n") != std::string::npos;
  }
};

INSTANTIATE_TEST_SUITE_P(, Launch, testing::Values(Isolation::kNamespace, Isolation::kPreload),
                         [](const auto& isolation) {
                           return isolation.param == Isolation::kNamespace ? "InAPrivateRoot"
                                                                           : "WithMappedPaths";
                         });

TEST_P(Launch, ShowsTheDaemonItsBoard) {
  Board board("display", steps({"print-property", "ro.board.platform", "gamma", "wait"}));
  board.start();
  ASSERT_TRUE(board.wait_for_log("standin: waits")) << board.log();
  EXPECT_TRUE(has_line(board, "standin: ro.board.platform qxt300"));
  EXPECT_TRUE(has_line(board, "standin: gamma result 0 entry 65535"));
  EXPECT_EQ(7, board.stop(SIGTERM));
}

TEST_P(Launch, PutsTheDaemonsFilesIntoTheStateFolder) {
  Board board("tv", steps({"write", "/data/a", "one", "write", "/var/cache/b", "two", "read",
                           "/data/vendor/qxalgo/c", "read", "/dev/dri/card0"}));
  board.write("/data/vendor/qxalgo/c", "three");
  board.start();
  EXPECT_EQ(0, board.wait(Board::kDefaultTimeout));
  EXPECT_EQ("one", board.read("/data/a"));
  EXPECT_EQ("two", board.read("/var/cache/b"));
  EXPECT_TRUE(has_line(board, "standin: read three")) << board.log();
  EXPECT_TRUE(has_line(board, "standin: read ")) << "the display device's placeholder";
  EXPECT_THROW(board.file("/home/x"), std::runtime_error);
  EXPECT_THROW(board.file("/data/../etc/passwd"), std::runtime_error);
}

TEST_P(Launch, RecordsTheProgramsThatTheDaemonStarts) {
  Board board("tv", steps({"redraw"}));
  board.start();
  EXPECT_EQ(0, board.wait(Board::kDefaultTimeout));
  EXPECT_EQ(std::vector<std::string>{"service call SurfaceFlinger 1006"}, board.calls());
  EXPECT_TRUE(has_line(board, "D before exec")) << board.log();
  EXPECT_TRUE(has_line(board, "standin: redraw ended with 0")) << board.log();
}

TEST_P(Launch, SharesPropertiesWithTheRunningDaemon) {
  Board board("tv", steps({"set-property", "vendor.a", "from inside", "wait", "print-property",
                           "vendor.b"}));
  board.start();
  ASSERT_TRUE(board.wait_for_log("standin: waits"));
  EXPECT_EQ("from inside", board.property("vendor.a"));
  board.set_property("vendor.b", "from outside");
  EXPECT_THROW(board.set_property("ro.board.platform", "x"), std::runtime_error);
  board.stop();
  EXPECT_TRUE(has_line(board, "standin: vendor.b from outside")) << board.log();
}

TEST_P(Launch, PassesTheExitStatusAndSignalsOn) {
  Board board("tv", steps({"exit", "3"}));
  board.start();
  EXPECT_EQ(3, board.wait(Board::kDefaultTimeout));
  EXPECT_FALSE(board.running());

  Board waiting("tv", steps({"wait"}));
  waiting.start();
  ASSERT_TRUE(waiting.wait_for_log("standin: waits"));
  EXPECT_EQ(std::nullopt, waiting.wait(Board::Milliseconds(10)));
  EXPECT_EQ(0, ::kill(waiting.daemon_pid(), 0));
  EXPECT_EQ(7, waiting.restart(SIGTERM));
  ASSERT_TRUE(waiting.wait_for_log("standin: waits")) << "looked for after the restart only";
  EXPECT_EQ(128 + SIGKILL, waiting.stop(SIGKILL));
}

// The daemon's child holds the lock as long as it lives.
bool locked(const fs::path& file) {
  const int descriptor = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
  const bool free = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
  ::close(descriptor);
  return !free;
}

TEST_P(Launch, EndsWhatTheDaemonLeaves) {
  Board board("tv", steps({"leave-child", "/data/held", "wait"}));
  board.start();
  ASSERT_TRUE(board.wait_for_log("standin: waits"));
  ASSERT_TRUE(locked(board.file("/data/held")));
  EXPECT_EQ(7, board.stop());
  EXPECT_FALSE(locked(board.file("/data/held")));
}

TEST_P(Launch, LeavesNothingBehindWhenABoardIsGivenUp) {
  TemporaryFolder folder;
  BoardOptions options;
  options.state = folder.path();
  auto kept = std::make_unique<Board>("tv", steps({"leave-child", "/data/held", "wait"}, options));
  kept->start();
  ASSERT_TRUE(kept->wait_for_log("standin: waits"));
  kept.reset();
  EXPECT_FALSE(locked(folder.path() / "data/held"));

  auto temporary = std::make_unique<Board>("tv", steps({"wait"}));
  const fs::path state = temporary->state();
  temporary->start();
  EXPECT_TRUE(fs::exists(state));
  temporary.reset();
  EXPECT_FALSE(fs::exists(state));
}

TEST_P(Launch, RunsCompanionsAsLongAsTheDaemon) {
  TemporaryFolder folder;
  const auto companion = folder.path() / "companion";
  std::ofstream(companion) << "#!/bin/sh\n"
                              "trap 'echo companion ends >&2; exit 0' TERM\n"
                              "echo companion starts >&2\n"
                              "while :; do sleep 0.02; done\n";
  fs::permissions(companion, fs::perms::owner_all);
  BoardOptions options;
  options.companions = {companion};
  Board board("tv", steps({"wait"}, std::move(options)));
  board.start();
  ASSERT_TRUE(board.wait_for_log("companion starts")) << board.log();
  board.stop();
  EXPECT_TRUE(board.wait_for_log("companion ends", Board::Milliseconds(0))) << board.log();
}

TEST_P(Launch, GivesTheDaemonACleanEnvironment) {
  ::setenv("J2S_CACHE", "/somewhere", 1);
  ::setenv("HOME", "/home/x", 1);
  BoardOptions options;
  options.environment = {{"J2S_NO_CACHE", "1"}};
  Board board("tv", steps({"print-environment", "J2S_CACHE", "print-environment", "HOME",
                           "print-environment", "J2S_NO_CACHE"},
                          std::move(options)));
  board.start();
  board.wait(Board::kDefaultTimeout);
  ::unsetenv("J2S_CACHE");
  EXPECT_TRUE(has_line(board, "standin: J2S_CACHE (none)")) << board.log();
  EXPECT_TRUE(has_line(board, "standin: HOME (none)"));
  EXPECT_TRUE(has_line(board, "standin: J2S_NO_CACHE 1"));
}

class PrivateRoot : public BoardTest {};

TEST_F(PrivateRoot, HidesTheRestOfTheMachineAndProtectsWhatItShows) {
  TemporaryFolder outside;
  std::ofstream(outside.path() / "secret") << "secret";
  Board& board =
      power_on("tv", stand_in({"read", outside.path() / "secret", "write", "/usr/x", "x", "write",
                               "/system/bin/x", "x", "write", fs::path(STAND_IN_DAEMON), "x"}));
  board.start();
  board.wait(Board::kDefaultTimeout);
  EXPECT_TRUE(board.wait_for_log("could not read " + (outside.path() / "secret").string()));
  for (const char* file : {"/usr/x", "/system/bin/x", STAND_IN_DAEMON}) {
    EXPECT_TRUE(board.wait_for_log(std::string("could not write ") + file)) << file;
  }
}

TEST_F(PrivateRoot, SharesTheNetworkWithTheTest) {
  Board& board = power_on("tv", stand_in({"listen", "5543", "wait"}));
  EXPECT_FALSE(board.wait_until_listening(kDaemonPort, Board::Milliseconds(0)));
  board.start();
  EXPECT_TRUE(board.wait_until_listening(kDaemonPort));
  board.stop();
  EXPECT_FALSE(board.wait_until_listening(kDaemonPort, Board::Milliseconds(0)));
}

TEST(Board, KeepsItsStateInAFolderOfOnesOwn) {
  TemporaryFolder folder;
  BoardOptions options = stand_in({});
  options.state = folder.path();
  {
    Board board("tv", options);
    board.write("/data/kept", "kept");
    board.write("/board/baseparameter/version", "9 9");
    board.set_property("persist.vendor.a", "kept");
    board.set_property("vendor.a", "lost");
    EXPECT_THROW(Board("tv", options), std::runtime_error) << "one board at a time";
  }
  const Board again("tv", options);
  EXPECT_EQ("kept", again.read("/data/kept"));
  EXPECT_EQ("9 9", again.read("/board/baseparameter/version"));
  EXPECT_EQ("kept", again.property("persist.vendor.a"));
  EXPECT_EQ(std::nullopt, again.property("vendor.a"));
}

TEST(Board, IsEquippedAsDescribed) {
  Description description;
  description.properties = {{"ro.board.platform", "from the properties"}, {"vendor.a", "b"}};
  description.store_empty = true;
  description.faults.no_device = true;
  const Board bare(description, stand_in({}));
  EXPECT_EQ("from the properties", bare.property("ro.board.platform"));
  EXPECT_EQ("b", bare.property("vendor.a"));
  EXPECT_FALSE(fs::exists(bare.file("/board/baseparameter/version")));
  EXPECT_FALSE(fs::exists(bare.file("/dev/dri/card0")));
  const Board full("display", stand_in({}));
  EXPECT_EQ("3 1", full.read("/board/baseparameter/version"));
  EXPECT_TRUE(fs::exists(full.file("/dev/dri/card0")));
}

TEST(Board, SaysWhyItCannotStart) {
  const auto message = [](BoardOptions options) -> std::string {
    try {
      Board("tv", std::move(options)).start();
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "started";
  };
  BoardOptions options = stand_in({});
  options.daemon = "/no/such/daemon";
  EXPECT_NE(std::string::npos, message(options).find("/no/such/daemon: No such file"));
  options = stand_in({});
  options.state = "/proc/no-such-place";
  EXPECT_NE(std::string::npos, message(options).find("/proc/no-such-place"));
}

}  // namespace
}  // namespace board
