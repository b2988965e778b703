#include "support/board_test.h"

#include <iostream>
#include <stdexcept>

#include "support/private_network.h"

namespace board {

void BoardTest::SetUp() {
  if (!in_private_network()) GTEST_SKIP() << "no private network here: " << private_root_obstacle();
}

void BoardTest::TearDown() {
  if (HasFailure() && board_) std::cerr << "--- the board's log\n" << board_->log() << "---\n";
  board_.reset();
}

Board& BoardTest::start_daemon() {
  if (!board_) power_on();
  board_->start();
  if (!board_->wait_until_listening(kDaemonPort)) {
    throw std::runtime_error("the daemon does not listen on port " + std::to_string(kDaemonPort));
  }
  return *board_;
}

}  // namespace board
