// Fixture of the scenario tests: each test has its own simulated board, in the private network that
// scenario_main.cpp has put the test program into, so that every daemon can use its port.
#ifndef TESTS_SUPPORT_BOARD_TEST_H_
#define TESTS_SUPPORT_BOARD_TEST_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "launch/board.h"

namespace board {

class BoardTest : public testing::Test {
 protected:
  // Skips the test if this machine allows no private network and root.
  void SetUp() override;
  // Shows the board's log if the test failed.
  void TearDown() override;

  // Powers on a board (boards/NAME.json, or a Description). Files and properties may then be added
  // before the daemon starts. A second call powers off the first board.
  template <typename What = std::string>
  Board& power_on(const What& what = "tv", BoardOptions options = {}) {
    board_.reset();
    board_ = std::make_unique<Board>(what, std::move(options));
    return *board_;
  }

  // Powers on unless done, starts the daemon and waits until it listens. Otherwise ends the test
  // program with a clear message.
  Board& start_daemon();

  // The board that is powered on.
  Board& board() { return *board_; }

 private:
  std::unique_ptr<Board> board_;
};

}  // namespace board

#endif  // TESTS_SUPPORT_BOARD_TEST_H_
