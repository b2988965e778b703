// Fixture of the tests that run pqctl, as its users do, against the daemon on a simulated board.
#ifndef TESTS_SCENARIO_PQCTL_ON_BOARD_H_
#define TESTS_SCENARIO_PQCTL_ON_BOARD_H_

#include <cstdlib>
#include <string>

#include "scenario/daemon_test.h"
#include "support/run_pqctl.h"

namespace scenario {

class PqctlOnBoard : public DaemonTest {
 protected:
  PqctlOnBoard() {
    setenv("XDG_CONFIG_HOME", home_.path().c_str(), 1);
    setenv("XDG_STATE_HOME", home_.path().c_str(), 1);
  }

  static Outcome run(const std::string& arguments, const std::string& input = "") {
    return run_pqctl(arguments, input);
  }
  // The output of a command that must succeed.
  static std::string output_of(const std::string& arguments, const std::string& input = "") {
    const Outcome outcome = run(arguments, input);
    EXPECT_EQ(outcome.status, 0) << arguments << '\n' << outcome.errors;
    return outcome.output;
  }

  // Both documents without the layout of their text, which an update of AI scenes changes.
  std::string stored() {
    return pqclient::print_json(*pqclient::parse_json(board().read(kPqDocument))) +
           pqclient::print_json(*pqclient::parse_json(board().read(kAipqDocument)));
  }

  // In the test's own folder, which also has pqctl's configuration and history.
  std::string file(const char* name) const { return (home_.path() / name).string(); }

  TemporaryFolder home_;
};

}  // namespace scenario

#endif  // TESTS_SCENARIO_PQCTL_ON_BOARD_H_
