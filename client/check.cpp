#include "pqclient/check.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "pqclient/error.h"

namespace pqclient {
namespace {

[[noreturn]] void refuse(const std::string& where, const cJSON& value, const std::string& right) {
  constexpr std::size_t kShown = 40;
  std::string given = print_json(value);
  if (given.size() > kShown) given = given.substr(0, kShown) + "...";
  throw Error(ErrorKind::kInput, where + " cannot be " + given + ": " + right);
}

std::string joined_choices(const Member& member) {
  std::string choices;
  for (const std::string_view choice : member.choices) {
    choices.append(choices.empty() ? "" : " or ").append(choice);
  }
  return choices;
}

void check_text(const Member& member, const std::string& where, const cJSON& value) {
  if (cJSON_IsString(&value) == 0) refuse(where, value, "it is a text");
  const bool is_choice = std::ranges::find(member.choices, std::string_view(value.valuestring)) !=
                         member.choices.end();
  if (member.choices.empty() || is_choice) return;
  refuse(where, value, "use " + joined_choices(member));
}

void check_number(const Member& member, const std::string& where, const cJSON& value) {
  const double number = value.valuedouble;
  if (cJSON_IsNumber(&value) == 0 || number != std::floor(number) ||
      number < static_cast<double>(member.min) || number > static_cast<double>(member.max)) {
    refuse(where, value,
           "whole numbers from " + std::to_string(member.min) + " to " +
               std::to_string(member.max) + " fit");
  }
}

void check_single(const Member& member, const std::string& where, const cJSON& value) {
  if (member.type == MemberType::kText) {
    check_text(member, where, value);
  } else {
    check_number(member, where, value);
  }
}

void check_table(const Member& member, const std::string& where, const cJSON& value) {
  if (cJSON_IsArray(&value) == 0 || cJSON_GetArraySize(&value) != member.count) {
    refuse(where, value, "it is a table of " + std::to_string(member.count) + " entries");
  }
  int index = 0;
  for (const cJSON* entry = value.child; entry != nullptr; entry = entry->next, ++index) {
    check_number(member, where + "/" + std::to_string(index), *entry);
  }
}

// The text of a table without its brackets, or of a number, is JSON already.
JsonPtr typed_value(const Target& target, std::string_view text) {
  if (target.member->type == MemberType::kText) {
    return JsonPtr(cJSON_CreateString(std::string(text).c_str()));
  }
  const bool is_bare_table = target.member->is_table() && !target.index && !text.starts_with('[');
  return parse_whole_json(is_bare_table ? "[" + std::string(text) + "]" : std::string(text));
}

}  // namespace

std::string describe_values(const Member& member) {
  if (member.type == MemberType::kText) {
    return member.choices.empty() ? "a text" : joined_choices(member);
  }
  const std::string range = std::to_string(member.min) + " to " + std::to_string(member.max);
  return member.is_table() ? std::to_string(member.count) + " numbers, " + range + " each" : range;
}

JsonPtr parse_value(const Target& target, std::string_view text) {
  if (target.member == nullptr) {
    throw Error(ErrorKind::kInput, "\"" + target.text() + "\" names no member to set");
  }
  JsonPtr value = typed_value(target, text);
  if (!value) {
    throw Error(ErrorKind::kInput,
                target.text() + " cannot be \"" + std::string(text) + "\": that is no number");
  }
  if (target.member->is_table() && !target.index) {
    check_table(*target.member, target.text(), *value);
  } else {
    check_single(*target.member, target.text(), *value);
  }
  return value;
}

void check_section(const Section& section, const cJSON& value, const cJSON& before) {
  const std::string name(section.name);
  if (cJSON_IsObject(&value) == 0) refuse(name, value, "a section is an object");
  for (const cJSON* item = value.child; item != nullptr; item = item->next) {
    (void)parse_target(name + "/" + item->string);  // says which names are near an unknown one
  }
  for (const Member& member : section.members) {
    const std::string where = name + "/" + std::string(member.name);
    const cJSON* after = last_member(value, member.name);
    if (after == nullptr) {
      throw Error(ErrorKind::kInput,
                  where + " would be missing, and the board would set it to zero: give a value");
    }
    const cJSON* old = last_member(before, member.name);
    if (old != nullptr && cJSON_Compare(after, old, 1) != 0) continue;
    if (member.is_table()) {
      check_table(member, where, *after);
    } else {
      check_single(member, where, *after);
    }
  }
}

}  // namespace pqclient
