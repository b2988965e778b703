// main() of the scenario tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "support/private_network.h"

namespace {

// CTest lists the tests during the build, maybe on a machine without private networks.
bool only_lists_tests(int argc, char** argv) {
  return std::any_of(argv, argv + argc,
                     [](std::string_view argument) { return argument == "--gtest_list_tests"; });
}

}  // namespace

int main(int argc, char** argv) {
  if (!only_lists_tests(argc, argv)) board::enter_private_network(argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
