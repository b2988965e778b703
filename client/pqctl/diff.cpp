#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "backup_file.h"
#include "command_syntax.h"
#include "commands.h"
#include "difference_text.h"
#include "pqclient/change.h"

namespace {

using pqclient::JsonPtr;
using pqclient::Target;

struct Arguments {
  std::string left;
  std::string right;  // empty: the board
};

void print_line(ChangedValues line, const Palette& palette) {
  const pqclient::ChangedValue& first = line.front();
  if (line.size() > 1) {
    std::cout << first.table << ": " << describe_entries(line) << '\n';
  } else {
    std::cout << first.path << ": " << palette.red(value_text(first.before)) << " -> "
              << palette.green(value_text(first.asked)) << '\n';
  }
}

JsonPtr json_of(const pqclient::ChangedValue& value) {
  const auto copy = [](const cJSON* item) {
    return item != nullptr ? pqclient::copy_json(*item) : JsonPtr(cJSON_CreateNull());
  };
  JsonPtr object(cJSON_CreateObject());
  pqclient::add_member(*object, "path", pqclient::make_string(value.path));
  pqclient::add_member(*object, "left", copy(value.before));
  pqclient::add_member(*object, "right", copy(value.asked));
  return object;
}

// A single document lacks sections; a section that only one side has is not a difference.
std::vector<pqclient::ChangedValue> differences(const SectionTree& left, const SectionTree& right) {
  std::vector<pqclient::ChangedValue> all;
  for (const Target& section : pqclient::sections_in_writing_order()) {
    const cJSON* before = left.find(section);
    const cJSON* after = right.find(section);
    if (before == nullptr || after == nullptr) continue;
    auto values = compare_states(section, before, after);
    // Members that only the left side has do not appear in a walk along the right one.
    for (const auto& value : compare_states(section, after, before)) {
      if (value.asked != nullptr && value.before == nullptr) {
        values.push_back({value.path, value.table, value.index, value.asked, nullptr, nullptr});
      }
    }
    all.insert(all.end(), values.begin(), values.end());
  }
  return all;
}

Backup read_noting_damage(const Session& session, const std::string& file) {
  Backup backup = read_backup(file);
  if (backup.is_damaged()) {
    session.note(file + " was changed after it was written, or is damaged");
  }
  return backup;
}

void diff(Session& session, const Arguments& arguments) {
  const Backup left = read_noting_damage(session, arguments.left);
  const Backup right =
      arguments.right.empty() ? read_board(session) : read_noting_damage(session, arguments.right);
  const auto values = differences(left.documents, right.documents);
  if (!values.empty()) session.end_with(ExitStatus::kDifferent);
  if (session.options().json) {
    const JsonPtr list(cJSON_CreateArray());
    for (const auto& value : values)
      pqclient::add_element(*list, json_of(value));
    std::cout << pqclient::print_json(*list) << '\n';
    return;
  }
  for (const ChangedValues line : lines_of(values))
    print_line(line, session.palette());
}

}  // namespace

void add_diff(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax(
      add_command(
          grammar,
          {.name = "diff",
           .group = kKeep,
           .about = "Compare a backup with the board, or two backups",
           .more =
               R"(Compares value by value, from the first to the second; each table takes one line. --json lists
every entry. Also accepts documents as they are on the board: pq_config.json, aipq_config.json. Exit
status 8 if there are differences.

Examples:
  pqctl diff before-tuning.json
  pqctl diff monday.json tuesday.json
)"},
          [arguments](Session& session) { diff(session, *arguments); }))
      .word("file", {"FILE", "A backup"}, arguments->left, Need::kRequired)
      .word("other", {"FILE", "Another backup, instead of the board"}, arguments->right,
            Need::kOptional);
}
