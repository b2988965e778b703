// One call after the other fails; see fault_loop.cpp for what is looked at after each.
#include <algorithm>
#include <sstream>
#include <string>

#include "support/board_test.h"

namespace faults {
namespace {

class Faults : public board::BoardTest, public testing::WithParamInterface<const char*> {};

TEST_P(Faults, HarmNothingElse) {
  board::BoardOptions options;
  options.daemon = FAULT_LOOP;
  options.arguments = {GetParam()};
  board::Board& board = power_on("tv", options);
  board.start();
  EXPECT_EQ(board.wait(std::chrono::seconds(250)), 0);
}

INSTANTIATE_TEST_SUITE_P(, Faults,
                         testing::Values("pq-query", "pq-query-tables", "aipq-query", "pq-change",
                                         "pq-change-low-latency", "pq-change-gamma",
                                         "pq-change-lut", "pq-operations", "pq-large-document",
                                         "aipq-change", "aipq-operations", "pattern",
                                         "pattern-mode-enter", "pattern-mode-leave", "dump-input",
                                         "dump-output", "unknown-command", "connection", "start",
                                         "start-new-pq-document", "start-new-aipq-document",
                                         "start-restoring"),
                         [](const auto& parameter) {
                           std::string name = parameter.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace faults
