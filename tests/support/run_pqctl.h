// Runs pqctl as a program and returns its output and exit status.
#ifndef TESTS_SUPPORT_RUN_PQCTL_H_
#define TESTS_SUPPORT_RUN_PQCTL_H_

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "support/temporary_folder.h"

struct Outcome {
  int status = -1;
  std::string output;
  std::string errors;
};

// arguments: passed to a shell as they are. PQCTL_PROGRAM is the build's pqctl, quoted for a shell.
inline Outcome run_pqctl(const std::string& arguments, const std::string& input = "") {
  const TemporaryFolder folder;
  const std::string in = folder.path() / "";
  folder.write("in", input);
  const std::string command = PQCTL_PROGRAM " <" + in + "in >" + in + "out 2>" + in + "err ";
  const int status = std::system((command + arguments).c_str());
  return {WEXITSTATUS(status), folder.read("out"), folder.read("err")};
}

#endif  // TESTS_SUPPORT_RUN_PQCTL_H_
