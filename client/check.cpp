#include "pqclient/check.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

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
  if (cJSON_IsString(&value) == 0) refuse(where, value, "a text is needed");
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
           "use a whole number from " + std::to_string(member.min) + " to " +
               std::to_string(member.max));
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
    refuse(where, value, "a table of " + std::to_string(member.count) + " entries is needed");
  }
  int index = 0;
  for (const cJSON* entry = value.child; entry != nullptr; entry = entry->next, ++index) {
    check_number(member, where + "/" + std::to_string(index), *entry);
  }
}

// A number, or a table's text in brackets, is already JSON.
JsonPtr typed_value(const Target& target, std::string_view text) {
  if (target.member->type == MemberType::kText) {
    return JsonPtr(cJSON_CreateString(std::string(text).c_str()));
  }
  if (const bool is_switch = target.member->max == 1 && !target.member->is_table(); is_switch) {
    if (text == "on") return JsonPtr(cJSON_CreateNumber(1));
    if (text == "off") return JsonPtr(cJSON_CreateNumber(0));
  }
  const bool is_bare_table = target.member->is_table() && !target.index && !text.starts_with('[');
  return parse_whole_json(is_bare_table ? "[" + std::string(text) + "]" : std::string(text));
}

void check_value(const Target& target, const cJSON& value) {
  if (target.member->is_table() && !target.index) {
    check_table(*target.member, target.text(), value);
  } else {
    check_single(*target.member, target.text(), value);
  }
}

// Empty if the text is a value.
std::optional<std::int64_t> step_in(const Target& target, std::string_view text) {
  const Member* member = target.member;
  const bool has_sign = text.starts_with('+') || text.starts_with('-');
  if (member == nullptr || member->type != MemberType::kNumber || !has_sign) return std::nullopt;
  const bool is_minus = text.starts_with('-');
  const bool has_equals = text.substr(1).starts_with('=');
  const std::string_view digits = text.substr(has_equals ? 2 : 1);
  std::uint32_t size = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), size);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  if (member->min < 0 && !has_equals) {
    if (is_minus) return std::nullopt;
    throw Error(ErrorKind::kInput, target.text() + " can be negative, so \"" + std::string(text) +
                                       "\" is ambiguous: write " + std::string(digits) +
                                       " for the value, +=" + std::string(digits) + " for a step");
  }
  return is_minus ? -std::int64_t{size} : std::int64_t{size};
}

void check_members(const Target& place, const cJSON& value, const cJSON& before) {
  const std::string name = place.text();
  if (cJSON_IsObject(&value) == 0) refuse(name, value, "a section must be an object");
  for (const cJSON* item = value.child; item != nullptr; item = item->next) {
    if (last_member(before, item->string) != nullptr) continue;
    (void)parse_target(name + "/" + item->string);  // throws with the nearest known names
  }
  for (const Member& member : place.section->members) {
    Target there = place;
    there.member = &member;
    const cJSON* after = last_member(value, member.name);
    const cJSON* old = last_member(before, member.name);
    if (after == old || (after != nullptr && old != nullptr && cJSON_Compare(after, old, 1) != 0)) {
      continue;
    }
    if (after == nullptr) {
      throw Error(ErrorKind::kInput, there.text() +
                                         " would be missing, and the board would set it to zero: "
                                         "give a value");
    }
    check_value(there, *after);
  }
}

}  // namespace

std::string describe_values(const Member& member) {
  if (member.type == MemberType::kText) {
    return member.choices.empty() ? "a text" : joined_choices(member);
  }
  if (member.max == 1) return "0 or 1 (off or on)";
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
                target.text() + " cannot be \"" + std::string(text) +
                    "\": " + (target.member->max == 1 ? "use on or off" : "that is no number"));
  }
  check_value(target, *value);
  return value;
}

Assignment parse_assignment(std::string_view place, std::string_view text) {
  Assignment assignment{.target = parse_target(place), .value = nullptr};
  if (const auto step = step_in(assignment.target, text)) {
    assignment.step = *step;
  } else {
    assignment.value = parse_value(assignment.target, text);
  }
  return assignment;
}

void Assignment::apply_to(JsonPtr& section_value) const {
  if (value) {
    target.replace_in(section_value, copy_json(*value));
    return;
  }
  const cJSON* old = target.find_in(*section_value);
  if (old == nullptr || (cJSON_IsNumber(old) == 0 && cJSON_IsArray(old) == 0)) {
    throw Error(ErrorKind::kBadAnswer, "the board has no number at " + target.text());
  }
  JsonPtr stepped = copy_json(*old);
  const auto add_step = [this](cJSON& number) {
    cJSON_SetNumberHelper(&number, number.valuedouble + static_cast<double>(step));
  };
  if (cJSON_IsNumber(stepped.get()) != 0) add_step(*stepped);
  for (cJSON* entry = stepped->child; entry != nullptr; entry = entry->next)
    add_step(*entry);
  check_value(target, *stepped);
  target.replace_in(section_value, std::move(stepped));
}

void check_section(const Target& section, const cJSON& value, const cJSON& before) {
  if (section.document == Document::kPq || section.scene) {
    check_members(section, value, before);
    return;
  }
  if (cJSON_IsArray(&value) == 0 || cJSON_GetArraySize(&value) != cJSON_GetArraySize(&before)) {
    refuse(section.text(), value, "it has one entry for each scene");
  }
  Target scene = section;
  scene.scene = 0;
  const cJSON* old = before.child;
  for (const cJSON* item = value.child; item != nullptr; item = item->next, old = old->next) {
    check_members(scene, *item, *old);
    if (*scene.scene + 1 < std::ssize(kScenes)) ++*scene.scene;
  }
}

}  // namespace pqclient
