#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "command_syntax.h"
#include "commands.h"
#include "history.h"
#include "pqclient/error.h"
#include "take_back.h"
#include "time_text.h"

namespace {

struct Arguments {
  std::optional<int> number;
  bool is_dry_run = false;
};

HistoryEntry chosen_entry(Session& session, std::optional<int> number) {
  const History history(session.board());
  if (const auto file = history.unreadable_newest(); !number && !file.empty()) {
    throw pqclient::Error(
        pqclient::ErrorKind::kFile,
        "cannot read the last change, " + file.string() +
            ": it is damaged, or of another version of pqctl. For an earlier one: pqctl "
            "undo NUMBER, see pqctl history");
  }
  std::vector<HistoryEntry> entries = history.entries();
  const auto is_chosen = [number](const HistoryEntry& entry) {
    return number ? entry.number == *number : !entry.is_undo && !entry.is_undone;
  };
  const auto found = std::ranges::find_if(entries.rbegin(), entries.rend(), is_chosen);
  if (found != entries.rend()) return std::move(*found);
  const std::string board = session.board().text();
  throw pqclient::Error(
      pqclient::ErrorKind::kInput,
      (number ? "the history of board " + board + " has no change " + std::to_string(*number)
              : "there is nothing to undo: no change of board " + board +
                    " was made from this machine, or all are undone") +
          ". See pqctl history");
}

void undo(Session& session, const Arguments& arguments) {
  if (!arguments.is_dry_run) session.require_writable();
  const HistoryEntry entry = chosen_entry(session, arguments.number);
  session.note("undoing change " + std::to_string(entry.number) + " of " + local_text(entry.time) +
               ": " + entry.command);
  write_all(session, plan_take_back(session, entry),
            {.is_dry_run = arguments.is_dry_run,
             .filing = Filing::kAsUndo,
             .remedy = ". Run the same command again to continue"});
  if (!arguments.is_dry_run) History(session.board()).mark_undone(entry.number);
}

}  // namespace

void add_undo(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax(
      add_command(
          grammar,
          {.name = "undo",
           .group = kKeep,
           .about = "Take back the last change made from this machine",
           .more =
               R"(Restores only the values that the change touched. Run it again to undo the change before that
one. With a number from pqctl history, undoes that change; the number of an undo repeats the
original change.

Examples:
  pqctl undo
  pqctl undo 17
)"},
          [arguments](Session& session) { undo(session, *arguments); }))
      .word("number", {"NUMBER", "Number of the change, see pqctl history"}, arguments->number)
      .flag("-n,--dry-run", "Print the operations, send nothing", arguments->is_dry_run);
}
