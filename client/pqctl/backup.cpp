#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "backup_file.h"
#include "command_syntax.h"
#include "commands.h"
#include "files.h"
#include "pqclient/error.h"

namespace {

struct Arguments {
  std::string file;
  bool overwrites = false;
};

void backup(Session& session, const Arguments& arguments) {
  const bool is_file = arguments.file != "-";
  if (is_file && !arguments.overwrites && std::filesystem::exists(arguments.file)) {
    throw pqclient::Error(pqclient::ErrorKind::kFile,
                          arguments.file +
                              " is there already, and may be the only copy of a "
                              "calibration: give another name, or --force");
  }
  const Backup backup = read_board(session);
  const std::string text = backup_text(backup);
  if (!is_file) {
    write_output("-", text);
    return;
  }
  replace_file(arguments.file, text);
  session.note("both documents of board " + backup.board + " are in " + arguments.file);
}

}  // namespace

void add_backup(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax(
      add_command(
          grammar,
          {.name = "backup",
           .group = kKeep,
           .about = "Save both documents in a file",
           .more =
               R"(The file is JSON, with the board's platform, the time, the version of pqctl and a checksum.

Example:
  pqctl backup before-tuning.json
)"},
          [arguments](Session& session) { backup(session, *arguments); }))
      .word("file", {"FILE", "File to write; - is standard output"}, arguments->file,
            Need::kRequired)
      .flag("--force", "Also over a file that is there already", arguments->overwrites);
}
