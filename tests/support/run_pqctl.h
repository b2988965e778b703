// pqctl as a program: what it prints, and how it ends.
#ifndef TESTS_SUPPORT_RUN_PQCTL_H_
#define TESTS_SUPPORT_RUN_PQCTL_H_

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "support/temporary_folder.h"

struct Outcome {
  int status = -1;
  std::string output;
  std::string errors;
};

inline std::string text_of(const std::filesystem::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// arguments: as for a shell. The program is the build's, PQCTL_PROGRAM.
inline Outcome run_pqctl(const std::string& arguments, const std::string& input = "") {
  const TemporaryFolder folder;
  const auto file = [&](const char* name) { return (folder.path() / name).string(); };
  std::ofstream(file("in")) << input;
  const std::string command = std::string(PQCTL_PROGRAM) + " <" + file("in") + " >" + file("out") +
                              " 2>" + file("err") + " " + arguments;
  const int status = std::system(command.c_str());
  return {WEXITSTATUS(status), text_of(file("out")), text_of(file("err"))};
}

#endif  // TESTS_SUPPORT_RUN_PQCTL_H_
