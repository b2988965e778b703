// pqctl: reads and changes the picture quality of a board from the command line.
#include <exception>
#include <iostream>

#include "command_line.h"
#include "pqclient/error.h"

namespace {

ExitStatus run(const CommandLine& line) {
  try {
    line.command(line.options);
    if (!std::cout.flush()) {
      throw pqclient::Error(pqclient::ErrorKind::kFile, "cannot write to standard output");
    }
    return ExitStatus::kOk;
  } catch (const pqclient::Error& error) {
    std::cerr << "pqctl: " << error.what();
    // The texts of the other kinds name the address already, or have nothing to do with it.
    if (error.kind() == pqclient::ErrorKind::kBadAnswer) {
      std::cerr << " (board: " << line.options.address.text() << ")";
    }
    std::cerr << '\n';
    return exit_status_of(error.kind());
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    CommandLine line;
    const auto ended = parse_command_line(argc, argv, line);
    return static_cast<int>(ended ? *ended : run(line));
  } catch (const std::exception& error) {
    std::cerr << "pqctl: " << error.what() << '\n';
    return static_cast<int>(ExitStatus::kUsage);
  }
}
