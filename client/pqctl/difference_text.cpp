#include "difference_text.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

constexpr std::size_t kSingleEntries = 4;

std::size_t length_of_run(ChangedValues changes) {
  const std::string& table = changes.front().table;
  if (table.empty()) return 1;
  const auto end = std::ranges::find_if(
      changes, [&](const pqclient::ChangedValue& change) { return change.table != table; });
  return static_cast<std::size_t>(end - changes.begin());
}

std::string signed_text(double step) {
  std::array<char, 32> text{};
  (void)std::snprintf(text.data(), text.size(), step == 0 ? "%.15g" : "%+.15g", step);
  return text.data();
}

}  // namespace

std::vector<ChangedValues> lines_of(ChangedValues changes) {
  std::vector<ChangedValues> lines;
  while (!changes.empty()) {
    const std::size_t run = length_of_run(changes);
    const std::size_t length = run > kSingleEntries ? run : 1;
    lines.push_back(changes.first(length));
    changes = changes.subspan(length);
  }
  return lines;
}

std::string describe_entries(ChangedValues entries) {
  std::string text = std::to_string(entries.size()) + " entries from " +
                     std::to_string(entries.front().index) + " to " +
                     std::to_string(entries.back().index);
  std::vector<double> steps;
  for (const pqclient::ChangedValue& entry : entries) {
    if (cJSON_IsNumber(entry.before) == 0 || cJSON_IsNumber(entry.asked) == 0) return text;
    steps.push_back(entry.asked->valuedouble - entry.before->valuedouble);
  }
  const auto [least, most] = std::ranges::minmax(steps);
  text += ", by " + signed_text(least);
  return least == most ? text : text + " to " + signed_text(most);
}

std::string value_text(const cJSON* value) {
  return value != nullptr ? pqclient::print_json(*value) : "nothing";
}
