#include <memory>
#include <string>
#include <vector>

#include "assignments.h"
#include "command_syntax.h"
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
  CommandSyntax(
      add_command(grammar,
                  {.name = "set",
                   .group = kChange,
                   .about = "Change values, read them back, and show old, new and stored value",
                   .more = kAssignmentHelp},
                  [arguments](Session& session) { set(session, *arguments); }))
      .words("assignment", kAssignmentShown, arguments->words)
      .flag("-n,--dry-run", "Print the operations, send nothing", arguments->is_dry_run)
      .flag("--no-verify", "Do not read back", arguments->skips_reading_back);
}
