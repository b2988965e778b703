#include "report_change.h"

#include <algorithm>
#include <ostream>

#include "pqclient/change.h"
#include "pqclient/error.h"

namespace {

constexpr std::size_t kShownLines = 12;

std::string json_text(const cJSON* value) {
  return value != nullptr ? pqclient::print_json(*value) : "null";
}

}  // namespace

void ChangeReport::add(const std::string& path, const cJSON* old, const cJSON& asked,
                       const cJSON* stored) {
  auto changes = pqclient::compare_change(path, old, asked, stored);
  if (changes.empty()) changes.push_back({path, old, &asked, stored});  // it was so before
  for (const pqclient::ChangedValue& change : changes) {
    lines_.push_back({change.path, json_text(change.before), json_text(change.asked),
                      json_text(change.stored), change.is_stored_as_asked()});
  }
}

void ChangeReport::print(std::ostream& out) const {
  if (as_json_) {
    print_json(out);
  } else {
    print_lines(out);
  }
}

void ChangeReport::print_lines(std::ostream& out) const {
  const std::size_t shown = std::min(lines_.size(), kShownLines);
  for (std::size_t i = 0; i < shown; ++i) {
    const Line& line = lines_[i];
    out << line.path << "  old " << line.old << "  new " << line.asked << "  stored " << line.stored
        << '\n';
  }
  if (shown < lines_.size()) out << "and " << lines_.size() - shown << " more\n";
}

void ChangeReport::print_json(std::ostream& out) const {
  const char* separator = "[";
  for (const Line& line : lines_) {
    // Paths consist of letters, digits, underscores and slashes: nothing to escape.
    out << separator << R"({"path":")" << line.path << R"(","old":)" << line.old << R"(,"new":)"
        << line.asked << R"(,"stored":)" << line.stored << '}';
    separator = ",";
  }
  out << (lines_.empty() ? "[]\n" : "]\n");
}

void ChangeReport::throw_unless_stored() const {
  const auto wrong = std::ranges::find(lines_, false, &Line::is_stored_as_asked);
  if (wrong == lines_.end()) return;
  const auto count = std::ranges::count(lines_, false, &Line::is_stored_as_asked);
  throw pqclient::Error(
      pqclient::ErrorKind::kMismatch,
      "the board stored something else: " + wrong->path + " should be " + wrong->asked + ", is " +
          wrong->stored +
          (count > 1 ? " (and " + std::to_string(count - 1) + " more values differ)" : "") +
          ". Is another tool tuning at the same time? The board's log says more: logcat -s "
          "aiqtool");
}
