// The launcher: what a daemon sees of a board, and what is left of it.
#include <gtest/gtest.h>
#include "support/board_test.h"

namespace board {
namespace {

class Launch : public BoardTest {
 protected:
  Board& run(std::vector<std::string> steps, BoardOptions options = {}) {
    options.daemon = STAND_IN_DAEMON;
    options.arguments = std::move(steps);
    Board& board = power_on("tv", std::move(options));
    board.start();
    return board;
  }
};

TEST_F(Launch, ShowsTheDaemonItsBoard) {
  Board& board = run({"print-property", "ro.board.platform", "gamma", "wait"});
  EXPECT_TRUE(board.wait_for_log("standin: waits"));
  EXPECT_NE(std::string::npos, board.log().find("standin: ro.board.platform qxt200\n"));
  EXPECT_NE(std::string::npos, board.log().find("standin: gamma result 0 entry 65535\n"));
  EXPECT_EQ(7, board.stop(SIGTERM));
}

}  // namespace
}  // namespace board
