// The syntax of pqctl's command line, and its help.
#ifndef PQCTL_COMMAND_LINE_H_
#define PQCTL_COMMAND_LINE_H_

#include <optional>
#include <string>

#include "commands.h"
#include "exit_status.h"
#include "options.h"

struct CommandLine {
  Options options;
  Command command;
  std::string text;  // all arguments as typed, blanks between them
};

// Returns an exit status after printing help, the version, or the fault of the command line.
// Returns nothing if there is a command to run.
std::optional<ExitStatus> parse_command_line(int argc, char** argv, CommandLine& line);

#endif  // PQCTL_COMMAND_LINE_H_
