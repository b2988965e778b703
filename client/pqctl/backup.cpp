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

// Writes to a pipe or a device directly; a file must be complete or absent.
void write_backup(const Arguments& arguments, const std::string& text) {
  std::error_code unknown;  // the write reports the error
  const auto type = std::filesystem::status(arguments.file, unknown).type();
  const bool is_file =
      type == std::filesystem::file_type::regular || type == std::filesystem::file_type::not_found;
  if (arguments.file != "-" && is_file) {
    replace_file(arguments.file, text);
  } else {
    write_output(arguments.file, text);
  }
}

void backup(Session& session, const Arguments& arguments) {
  std::error_code unknown;
  if (arguments.file != "-" && !arguments.overwrites &&
      std::filesystem::is_regular_file(arguments.file, unknown)) {
    throw pqclient::Error(pqclient::ErrorKind::kFile,
                          arguments.file +
                              " already exists and may be the only copy of a "
                              "calibration: give another name, or --force");
  }
  const Backup backup = read_board(session);
  write_backup(arguments, backup_text(backup));
  if (arguments.file != "-") {
    session.note("saved both documents of board " + backup.board + " in " + arguments.file);
  }
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
      .flag("--force", "Overwrite an existing file", arguments->overwrites);
}
