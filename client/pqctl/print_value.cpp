#include "print_value.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using pqclient::Member;
using pqclient::Section;

// For a table that is not in the schema: a newer board may have one.
constexpr int kUsualColumns = 16;

std::string bare(const cJSON& value) {
  return cJSON_IsString(&value) != 0 ? value.valuestring : pqclient::print_json(value);
}

void print_table(std::ostream& out, const cJSON& table, int columns) {
  std::vector<std::string> entries;
  std::size_t width = 0;
  for (const cJSON* entry = table.child; entry != nullptr; entry = entry->next) {
    entries.push_back(bare(*entry));
    width = std::max(width, entries.back().size());
  }
  const auto row_length = static_cast<std::size_t>(columns);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (i % row_length == 0) out << std::setw(6) << i << ":";
    out << ' ' << std::setw(static_cast<int>(width)) << entries[i];
    if (i % row_length == row_length - 1 || i + 1 == entries.size()) out << '\n';
  }
}

int columns_of(const Member* member) {
  return member != nullptr && member->columns > 0 ? member->columns : kUsualColumns;
}

// In the order of the answer, with all its members.
void print_section(std::ostream& out, const cJSON& value, const Section& section) {
  std::size_t width = 0;
  for (const cJSON* item = value.child; item != nullptr; item = item->next) {
    if (cJSON_IsArray(item) == 0) width = std::max(width, std::string_view(item->string).size());
  }
  for (const cJSON* item = value.child; item != nullptr; item = item->next) {
    if (cJSON_IsArray(item) != 0) continue;
    out << std::left << std::setw(static_cast<int>(width)) << item->string << std::right << "  "
        << bare(*item) << '\n';
  }
  for (const cJSON* item = value.child; item != nullptr; item = item->next) {
    if (cJSON_IsArray(item) == 0) continue;
    out << '\n' << item->string << " (" << cJSON_GetArraySize(item) << " entries)\n";
    print_table(out, *item, columns_of(pqclient::find_member(section, item->string)));
  }
}

void print_scenes(std::ostream& out, const cJSON& scenes, const Section& section) {
  int number = 0;
  for (const cJSON* scene = scenes.child; scene != nullptr; scene = scene->next, ++number) {
    out << (number > 0 ? "\n" : "") << "scene " << number << '\n';
    if (cJSON_IsObject(scene) != 0) {
      print_section(out, *scene, section);
    } else {
      out << bare(*scene) << '\n';  // the board stores this document unchecked
    }
  }
}

}  // namespace

void print_value(std::ostream& out, const cJSON& value, const pqclient::Target& target) {
  if (cJSON_IsObject(&value) != 0) {
    print_section(out, value, *target.section);
  } else if (cJSON_IsArray(&value) != 0 && cJSON_IsObject(value.child) != 0) {
    print_scenes(out, value, *target.section);
  } else if (cJSON_IsArray(&value) != 0) {
    print_table(out, value, columns_of(target.member));
  } else {
    out << bare(value) << '\n';
  }
}
