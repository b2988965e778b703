#include <algorithm>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "command_syntax.h"
#include "commands.h"
#include "difference_text.h"
#include "history.h"
#include "pqclient/error.h"
#include "time_text.h"

namespace {

using pqclient::JsonPtr;

struct Arguments {
  std::optional<int> number;
};

constexpr std::size_t kShownCommand = 60;  // letters; a table makes the command line long

const char* state_of(const HistoryEntry& entry) {
  if (entry.is_undone) return "undone";
  return entry.is_undo ? "undo" : "";
}

void print_line(const HistoryEntry& entry) {
  std::string command = entry.command.substr(0, kShownCommand);
  if (command.size() < entry.command.size()) command += "...";
  std::cout << std::setw(5) << entry.number << "  " << local_text(entry.time) << "  " << std::left
            << std::setw(6) << state_of(entry) << std::right << "  " << command << '\n';
}

void print_changes(const HistoryEntry& entry) {
  for (const HistoryChange& change : entry.changes) {
    const auto values = compare_states(change.place, change.before.get(), change.after.get());
    for (const ChangedValues line : lines_of(values)) {
      std::cout << "       ";
      if (line.size() > 1) {
        std::cout << line.front().table << ": " << describe_entries(line) << '\n';
      } else {
        std::cout << line.front().path << ": " << value_text(line.front().before) << " -> "
                  << value_text(line.front().asked) << '\n';
      }
    }
  }
}

void print_json(const std::vector<HistoryEntry>& entries) {
  const JsonPtr list(cJSON_CreateArray());
  for (const HistoryEntry& entry : entries) {
    JsonPtr item = json_of(entry);
    pqclient::add_member(*item, "number", JsonPtr(cJSON_CreateNumber(entry.number)));
    pqclient::add_element(*list, std::move(item));
  }
  std::cout << pqclient::print_json(*list) << '\n';
}

void show_history(Session& session, const Arguments& arguments) {
  std::vector<HistoryEntry> entries = History(session.board()).entries();
  if (arguments.number) {
    std::erase_if(entries,
                  [&](const HistoryEntry& entry) { return entry.number != *arguments.number; });
    if (entries.empty()) {
      throw pqclient::Error(pqclient::ErrorKind::kInput,
                            "the history of board " + session.board().text() + " has no change " +
                                std::to_string(*arguments.number));
    }
  }
  if (session.options().json) {
    print_json(entries);
    return;
  }
  if (entries.empty()) {
    session.note("no changes of board " + session.board().text() + " were made from this machine");
  }
  for (const HistoryEntry& entry : entries) {
    print_line(entry);
    if (arguments.number) print_changes(entry);
  }
}

}  // namespace

void add_history(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax(
      add_command(
          grammar,
          {.name = "history",
           .group = kKeep,
           .about = "List the changes made from this machine, oldest first",
           .more = R"(Before each change pqctl keeps the old values, separately for each board, in
$XDG_STATE_HOME/pqctl/history, usually in ~/.local/state. It keeps the newest 300 changes of each
board. With a number, shows the values of that change.

Examples:
  pqctl history
  pqctl history 17
)"},
          [arguments](Session& session) { show_history(session, *arguments); }))
      .word("number", {"NUMBER", "Only this change, with its values"}, arguments->number);
}
