// Makes one call after the other fail; fault_loop.cpp lists the checks after each.
#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "support/board_test.h"

namespace faults {
namespace {

class Faults : public board::BoardTest, public testing::WithParamInterface<std::string> {};

TEST_P(Faults, HarmNothingElse) {
  board::BoardOptions options;
  options.daemon = FAULT_LOOP;
  options.arguments = {GetParam()};
  board::Board& board = power_on("tv", options);
  board.start();
  EXPECT_EQ(board.wait(std::chrono::seconds(280)), 0);
}

std::vector<std::string> subjects() {
  std::istringstream names(FAULT_SUBJECTS);
  return {std::istream_iterator<std::string>(names), {}};
}

INSTANTIATE_TEST_SUITE_P(, Faults, testing::ValuesIn(subjects()), [](const auto& parameter) {
  std::string name = parameter.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

}  // namespace
}  // namespace faults
