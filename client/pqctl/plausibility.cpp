#include "plausibility.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

using pqclient::Member;
using pqclient::Target;

bool is_in_range(const Member& member, const cJSON& value) {
  return cJSON_IsNumber(&value) != 0 && value.valuedouble >= static_cast<double>(member.min) &&
         value.valuedouble <= static_cast<double>(member.max);
}

// Empty if the table is plausible.
std::string doubt_about_table(const Member& member, const cJSON& table) {
  const int count = cJSON_GetArraySize(&table);
  if (count != member.count) {
    return "has " + std::to_string(count) + " entries instead of " + std::to_string(member.count);
  }
  bool is_falling = false;
  bool is_zero = true;
  int index = 0;
  double last = 0;
  for (const cJSON* entry = table.child; entry != nullptr; entry = entry->next, ++index) {
    if (!is_in_range(member, *entry)) return "has an invalid entry " + std::to_string(index);
    is_falling = is_falling || entry->valuedouble < last;
    is_zero = is_zero && entry->valuedouble == 0;
    last = entry->valuedouble;
  }
  if (member.name.starts_with("gammaTab") && is_zero) return "is all zero: the picture is black";
  if (member.name.starts_with("gammaTab") && is_falling) return "is not monotonic";
  return "";
}

std::string doubt_about_value(const Member& member, const cJSON& value) {
  if (member.is_table()) return doubt_about_table(member, value);
  if (member.type == pqclient::MemberType::kText) {
    const bool is_text = cJSON_IsString(&value) != 0;
    const bool is_choice =
        member.choices.empty() ||
        (is_text && std::ranges::find(member.choices, std::string_view(value.valuestring)) !=
                        member.choices.end());
    return is_choice ? "" : "is " + pqclient::print_json(value) + ", which the board does not know";
  }
  if (!is_in_range(member, value)) {
    return "is " + pqclient::print_json(value) + ", out of range: " + std::to_string(member.min) +
           " to " + std::to_string(member.max);
  }
  const bool is_gain = member.name.starts_with("csc") && member.name.ends_with("Gain");
  return is_gain && value.valuedouble == 0 ? "is 0: that colour is black" : "";
}

void add_doubts(const Target& place, const cJSON& values, std::vector<std::string>& doubts) {
  for (const Member& member : place.section->members) {
    const cJSON* value = pqclient::last_member(values, member.name);
    const std::string doubt = value == nullptr ? "is missing" : doubt_about_value(member, *value);
    if (!doubt.empty()) {
      doubts.push_back(place.text() + "/" + std::string(member.name) + " " + doubt);
    }
  }
}

}  // namespace

std::vector<std::string> doubts_about(const Target& section, const cJSON& section_value) {
  std::vector<std::string> doubts;
  if (section.document == pqclient::Document::kPq) {
    add_doubts(section, section_value, doubts);
    return doubts;
  }
  int number = 0;
  for (const cJSON* scene = section_value.child; scene != nullptr; scene = scene->next, ++number) {
    if (number >= static_cast<int>(pqclient::kScenes.size())) break;
    Target place = section;
    place.scene = number;
    add_doubts(place, *scene, doubts);
  }
  if (number != static_cast<int>(pqclient::kScenes.size())) {
    doubts.push_back(section.text() + " has " + std::to_string(number) + " scenes instead of 12");
  }
  return doubts;
}
