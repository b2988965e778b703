#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "assignments.h"
#include "commands.h"
#include "write_plan.h"

namespace {

struct Arguments {
  std::vector<std::string> words;
  bool is_dry_run = false;
  bool skips_reading_back = false;
};

void set(Session& session, const Arguments& arguments) {
  const auto assignments = parse_assignments(arguments.words);
  if (!arguments.is_dry_run) session.require_writable();
  write_all(session, plan_assignments(session, assignments),
            {.is_dry_run = arguments.is_dry_run, .reads_back = !arguments.skips_reading_back});
}

}  // namespace

void add_set(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command =
      add_command(grammar,
                  {.name = "set",
                   .group = kChange,
                   .about = "Change values, read them back, and show what was and what is stored",
                   .more = kAssignmentHelp},
                  [arguments](Session& session) { set(session, *arguments); });
  add_assignment_words(command, arguments->words);
  command.add_flag("-n,--dry-run", arguments->is_dry_run, "Print what would be sent, send nothing");
  command.add_flag("--no-verify", arguments->skips_reading_back, "Do not read back");
}
