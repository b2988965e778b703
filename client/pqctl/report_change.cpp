#include "report_change.h"

#include <algorithm>
#include <ostream>
#include <string>

#include "difference_text.h"
#include "pqclient/error.h"

namespace {

using pqclient::ChangedValue;
using pqclient::JsonPtr;

bool is_read_back(const ChangedValue& value) {
  return value.stored != nullptr;
}

bool is_wrong(const ChangedValue& value) {
  return is_read_back(value) && !value.is_stored_as_asked();
}

std::string stored_text(const ChangedValue& value, const Palette& palette) {
  if (!is_read_back(value)) return "not read back";
  const std::string text = "stored " + value_text(value.stored);
  return is_wrong(value) ? palette.red(text) : palette.green(text);
}

std::string stored_text(ChangedValues entries, const Palette& palette) {
  if (!is_read_back(entries.front())) return "not read back";
  const auto wrong = std::ranges::count_if(entries, is_wrong);
  if (wrong == 0) return palette.green("stored as asked");
  const ChangedValue& first = *std::ranges::find_if(entries, is_wrong);
  return palette.red(std::to_string(wrong) + " of them stored differently, first " + first.path);
}

void print_line(std::ostream& out, ChangedValues line, const Palette& palette) {
  const ChangedValue& first = line.front();
  if (line.size() > 1) {
    out << first.table << ": " << describe_entries(line) << ", " << stored_text(line, palette);
  } else {
    out << first.path << ": was " << value_text(first.before) << ", now " << value_text(first.asked)
        << ", " << stored_text(first, palette);
  }
  out << '\n';
}

void add_value(cJSON& object, const char* name, const cJSON* value) {
  pqclient::add_member(
      object, name, value != nullptr ? pqclient::copy_json(*value) : JsonPtr(cJSON_CreateNull()));
}

JsonPtr json_of(const ChangedValue& value) {
  JsonPtr object(cJSON_CreateObject());
  pqclient::add_member(*object, "path", JsonPtr(cJSON_CreateString(value.path.c_str())));
  add_value(*object, "was", value.before);
  add_value(*object, "now", value.asked);
  if (is_read_back(value)) add_value(*object, "stored", value.stored);
  return object;
}

JsonPtr copy_or_null(const cJSON* tree) {
  return tree != nullptr ? pqclient::copy_json(*tree) : nullptr;
}

}  // namespace

void ChangeReport::add(const pqclient::Target& place, const cJSON* before, const cJSON& asked,
                       const cJSON* stored, bool is_silent) {
  Write write{copy_or_null(before),
              pqclient::copy_json(asked),
              copy_or_null(stored),
              is_silent ? "" : place.text(),
              {}};
  const cJSON* compared = write.stored ? write.stored.get() : write.asked.get();
  write.values = compare_change(place, write.before.get(), write.asked.get(), compared);
  if (write.values.empty() && write.asked->child == nullptr) {  // a single, unchanged value
    write.values.push_back({.path = place.text(),
                            .table = "",
                            .index = 0,
                            .before = write.before.get(),
                            .asked = write.asked.get(),
                            .stored = compared});
  }
  if (!write.stored) {
    for (ChangedValue& value : write.values)
      value.stored = nullptr;
  }
  writes_.push_back(std::move(write));
}

void ChangeReport::print(std::ostream& out, const Palette& palette) const {
  for (const Write& write : writes_) {
    if (write.values.empty() && !write.place.empty()) {
      out << write.place << ": nothing differs, written again\n";
    }
    for (const ChangedValues line : lines_of(write.values))
      print_line(out, line, palette);
  }
}

void ChangeReport::print_json(std::ostream& out) const {
  const JsonPtr values(cJSON_CreateArray());
  for (const Write& write : writes_) {
    for (const ChangedValue& value : write.values)
      pqclient::add_element(*values, json_of(value));
  }
  out << pqclient::print_json(*values) << '\n';
}

std::vector<const ChangedValue*> ChangeReport::wrong_values() const {
  std::vector<const ChangedValue*> wrong;
  for (const Write& write : writes_) {
    for (const ChangedValue& value : write.values) {
      if (is_wrong(value)) wrong.push_back(&value);
    }
  }
  return wrong;
}

void ChangeReport::throw_unless_stored() const {
  const auto wrong = wrong_values();
  if (wrong.empty()) return;
  const std::size_t more = wrong.size() - 1;
  throw pqclient::Error(
      pqclient::ErrorKind::kMismatch,
      "the board stored something else: " + wrong.front()->path + " should be " +
          value_text(wrong.front()->asked) + ", is " + value_text(wrong.front()->stored) +
          (more > 0 ? " (and " + std::to_string(more) + " more values differ)" : "") +
          ". Is another tool tuning at the same time? The board's log says more: logcat -s "
          "aiqtool");
}
