// The launcher: the daemon's view of a board, how the daemon ends, and the traces it leaves.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/board_test.h"
#include "support/temporary_folder.h"

namespace board {
namespace {

namespace fs = std::filesystem;

// Prints a line, then waits for SIGTERM.
constexpr char kWait[] = "trap 'exit 7' TERM; echo waits; while :; do sleep 0.02; done";

// A shell script in place of the daemon; it uses the board as the daemon does.
BoardOptions script(const std::string& text, BoardOptions options = {}) {
  options.daemon = "/bin/sh";
  options.arguments = {"-c", text};
  return options;
}

// Both isolations give the daemon the same view of the board.
class Launch : public testing::TestWithParam<Isolation> {
 protected:
  void SetUp() override {
#ifdef __SANITIZE_THREAD__
    // Its programs need addresses that proot has taken.
    if (GetParam() == Isolation::kProot) GTEST_SKIP() << "no thread sanitizer under proot";
#endif
    if (GetParam() == Isolation::kNamespace && !private_root_obstacle().empty()) {
      GTEST_SKIP() << "no private root here: " << private_root_obstacle();
    }
    options_.isolation = GetParam();
  }

  BoardOptions options_;
};

INSTANTIATE_TEST_SUITE_P(, Launch, testing::Values(Isolation::kNamespace, Isolation::kProot),
                         [](const auto& isolation) {
                           return isolation.param == Isolation::kNamespace ? "InAPrivateRoot"
                                                                           : "UnderProot";
                         });

TEST_P(Launch, GivesTheDaemonTheBoardsFilesAndPrograms) {
  Board board("tv", script("echo one >/data/a; echo two >/var/cache/b;"
                           "cat /data/vendor/qxalgo/c /dev/dri/card0;"
                           "/system/bin/setprop vendor.a \"$(/system/bin/getprop vendor.b)\";"
                           "/system/bin/service call SurfaceFlinger 1006",
                           options_));
  board.write("/data/vendor/qxalgo/c", "three\n");
  board.set_property("vendor.b", "from outside");
  board.start();
  EXPECT_EQ(0, board.wait(Board::kDefaultTimeout)) << board.log();
  EXPECT_EQ("one\n", board.read("/data/a"));
  EXPECT_EQ("two\n", board.read("/var/cache/b"));
  EXPECT_NE(std::string::npos, board.log().find("three\n")) << board.log();
  EXPECT_EQ("from outside", board.property("vendor.a"));
  EXPECT_EQ(std::vector<std::string>{"service call SurfaceFlinger 1006"}, board.calls());
  EXPECT_THROW((void)board.file("/home/x"), std::runtime_error);
  EXPECT_THROW((void)board.file("/data/../etc/passwd"), std::runtime_error);
}

TEST_P(Launch, PassesTheExitStatusAndSignalsOn) {
  Board board("tv", script("exit 3", options_));
  board.start();
  EXPECT_EQ(3, board.wait(Board::kDefaultTimeout));
  EXPECT_FALSE(board.running());

  Board waiting("tv", script(kWait, options_));
  waiting.start();
  ASSERT_TRUE(waiting.wait_for_log("waits"));
  EXPECT_EQ(std::nullopt, waiting.wait(Board::Milliseconds(10)));
  EXPECT_EQ(0, ::kill(waiting.daemon_pid(), 0));
  EXPECT_EQ(7, waiting.restart(SIGTERM));
  ASSERT_TRUE(waiting.wait_for_log("waits")) << "looked for after the restart only";
  EXPECT_EQ(128 + SIGKILL, waiting.stop(SIGKILL));
}

bool locked(const fs::path& file) {
  const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  const bool free = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
  ::close(descriptor);
  return !free;
}

// The daemon's child holds the lock for as long as it lives, which is hours unless it is killed.
TEST_P(Launch, LeavesNothingBehindHoweverItEnds) {
  const TemporaryFolder folder;
  const fs::path held = folder.path() / "data/held";
  options_.state = folder.path();
  std::optional<Board> board(
      std::in_place, "tv",
      script("trap 'exit 7' TERM; setsid flock /data/held sleep 10000 & " + std::string(kWait),
             options_));
  const auto start = [&] {
    board->start();
    for (int i = 0; i < 500 && !locked(held); ++i)
      ::usleep(10'000);
    ASSERT_TRUE(locked(held)) << board->log();
  };
  start();
  EXPECT_EQ(7, board->stop());
  EXPECT_FALSE(locked(held));
  start();
  board.reset();
  EXPECT_FALSE(locked(held));

  options_.state.clear();
  board.emplace("tv", script(kWait, options_));
  const fs::path state = board->state();
  board->start();
  EXPECT_TRUE(fs::exists(state));
  board.reset();
  EXPECT_FALSE(fs::exists(state));
}

class PrivateRoot : public BoardTest {};

TEST_F(PrivateRoot, HidesTheRestOfTheMachineAndProtectsWhatItShows) {
  const TemporaryFolder outside;
  const fs::path secret = outside.path() / "secret";
  std::ofstream(secret) << "still there";
  Board& board = power_on("tv", script("cat " + secret.string() +
                                       "; for file in /usr/x /system/bin/x /bin/sh; do"
                                       "    true >>$file || echo protected $file; done"));
  board.start();
  board.wait(Board::kDefaultTimeout);
  for (const char* file : {"/usr/x", "/system/bin/x", "/bin/sh"}) {
    EXPECT_TRUE(board.wait_for_log(std::string("protected ") + file)) << file;
  }
  EXPECT_EQ(std::string::npos, board.log().find("still there")) << board.log();
}

TEST(Board, KeepsItsStateInAFolderOfOnesOwn) {
  const TemporaryFolder folder;
  BoardOptions options;
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

TEST(Board, LeavesAFileCalledLogInThatFolderAlone) {
  const TemporaryFolder folder;
  folder.write("log", "mine");
  BoardOptions options;
  options.state = folder.path();
  options.log_to_terminal = true;
  const Board board("tv", options);
  EXPECT_EQ("mine", folder.read("log"));
}

// A user who can create one of these must not choose where a property is written.
TEST(RunningBoards, AreNeitherLinksNorOpenToOthers) {
  const TemporaryFolder folder;
  ASSERT_EQ(0, ::setenv("TMPDIR", folder.path().c_str(), 1));
  const std::string name = "qxboard-run-" + std::to_string(::getuid()) + "-";
  const fs::path real = folder.path() / "real";
  const fs::path open = folder.path() / (name + "open");
  for (const auto& path : {real, open})
    folder.write(path / "lock", "");
  fs::create_directory_symlink(real, folder.path() / (name + "link"));
  const auto hold = [](const fs::path& path) {
    const int descriptor = ::open((path / "lock").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(0, ::flock(descriptor, LOCK_EX));
    return descriptor;
  };
  const int locks[] = {hold(real), hold(open)};
  fs::permissions(open, fs::perms::all);
  EXPECT_TRUE(running_boards().empty());
  fs::permissions(open, fs::perms::owner_all);
  EXPECT_EQ(running_boards(), std::vector<fs::path>{open});
  for (const int lock : locks)
    ::close(lock);
  ::unsetenv("TMPDIR");
}

TEST(Board, RemovesWhatKilledOnesLeft) {
  const TemporaryFolder folder;
  ASSERT_EQ(0, ::setenv("TMPDIR", folder.path().c_str(), 1));
  const std::string owner = "-" + std::to_string(::getuid()) + "-x";
  for (const char* kind : {"new", "test", "run"})
    folder.write("qxboard-" + (kind + owner) + "/board/file", "");
  fs::last_write_time(folder.path() / ("qxboard-new" + owner),
                      fs::file_time_type::clock::now() - std::chrono::hours(1));
  { const Board board("tv", {}); }
  EXPECT_FALSE(fs::exists(folder.path() / ("qxboard-new" + owner)));
  EXPECT_FALSE(fs::exists(folder.path() / ("qxboard-test" + owner)));
  EXPECT_TRUE(fs::exists(folder.path() / ("qxboard-run" + owner))) << "another kind's";
  ::unsetenv("TMPDIR");
}

}  // namespace
}  // namespace board
