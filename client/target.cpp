#include "pqclient/target.h"

#include <charconv>

#include "pqclient/error.h"

namespace pqclient {
namespace {

// Cuts off and returns what stands before the first slash.
std::string_view take_step(std::string_view& rest) {
  const std::size_t slash = rest.find('/');
  const std::string_view step = rest.substr(0, slash);
  rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
  return step;
}

std::string list(const auto& names) {
  std::string text;
  for (const auto& name : names)
    text.append(text.empty() ? "" : ", ").append(name);
  return text;
}

const Section& section_named(std::string_view name) {
  if (const Section* section = find_section(name)) return *section;
  std::vector<std::string_view> known;
  for (const Section& section : sections())
    known.push_back(section.name);
  throw Error(ErrorKind::kInput,
              "there is no section \"" + std::string(name) + "\": use one of " + list(known));
}

const Member& member_named(const Section& section, std::string_view name) {
  if (const Member* member = find_member(section, name)) return *member;
  const auto near = nearest_members(section, name);
  const std::string section_name(section.name);
  throw Error(ErrorKind::kInput,
              "section " + section_name + " has no member \"" + std::string(name) + "\": " +
                  (near.empty() ? "see pqctl get " + section_name : "nearest: " + list(near)));
}

int index_in(const Member& member, std::string_view text) {
  const std::string name(member.name);
  if (!member.is_table()) {
    throw Error(ErrorKind::kInput,
                name + " is a single value and has no entry \"" + std::string(text) + "\"");
  }
  int index = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
  if (error != std::errc() || end != text.data() + text.size() || index < 0 ||
      index >= member.count) {
    throw Error(ErrorKind::kInput, name + " has no entry \"" + std::string(text) +
                                       "\": indices go from 0 to " +
                                       std::to_string(member.count - 1));
  }
  return index;
}

}  // namespace

std::string Target::text() const {
  std::string text(section->name);
  if (member != nullptr) text.append("/").append(member->name);
  if (index) text.append("/").append(std::to_string(*index));
  return text;
}

const cJSON* Target::find_in(const cJSON& section_value) const {
  const cJSON* value =
      member != nullptr ? last_member(section_value, member->name) : &section_value;
  return value != nullptr && index ? element(*value, *index) : value;
}

Target parse_target(std::string_view text) {
  if (text.starts_with('/')) text.remove_prefix(1);
  Target target;
  target.section = &section_named(take_step(text));
  if (text.empty()) return target;
  target.member = &member_named(*target.section, take_step(text));
  if (text.empty()) return target;
  target.index = index_in(*target.member, text);
  return target;
}

}  // namespace pqclient
