#include "pqclient/target.h"

#include <algorithm>
#include <charconv>
#include <iterator>

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

const Section& aipq_section_named(std::string_view name) {
  const Section& section = section_named(name);
  if (section.has_scenes) return section;
  throw Error(ErrorKind::kInput,
              "the AIPQ document has no section \"" + std::string(name) + "\": use dci or acm");
}

// Nothing when the text is no whole number.
std::optional<int> number_in(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

int scene_named(std::string_view name) {
  const auto* found = std::ranges::find(kScenes, name);
  const auto number = found == kScenes.end() ? number_in(name) : found - kScenes.begin();
  if (number && *number >= 0 && *number < std::ssize(kScenes)) return static_cast<int>(*number);
  throw Error(ErrorKind::kInput, "there is no scene \"" + std::string(name) +
                                     "\": use 0 to 11 or one of " + list(kScenes));
}

int index_in(const Member& member, std::string_view text) {
  const std::string name(member.name);
  if (!member.is_table()) {
    throw Error(ErrorKind::kInput,
                name + " is a single value and has no entry \"" + std::string(text) + "\"");
  }
  const auto index = number_in(text);
  if (index && *index >= 0 && *index < member.count) return *index;
  throw Error(ErrorKind::kInput, name + " has no entry \"" + std::string(text) +
                                     "\": indices go from 0 to " +
                                     std::to_string(member.count - 1));
}

Target parse(std::string_view text, bool is_aipq) {
  if (text.starts_with('/')) text.remove_prefix(1);
  Target target;
  const std::string_view section = take_step(text);
  target.section = is_aipq ? &aipq_section_named(section) : &section_named(section);
  if (is_aipq && !text.empty()) target.scene = scene_named(take_step(text));
  if (!text.empty()) target.member = &member_named(*target.section, take_step(text));
  if (!text.empty()) target.index = index_in(*target.member, text);
  return target;
}

}  // namespace

std::string Target::text() const {
  std::string text(section->name);
  if (scene) text.append("/").append(std::to_string(*scene));
  if (member != nullptr) text.append("/").append(member->name);
  if (index) text.append("/").append(std::to_string(*index));
  return text;
}

const cJSON* Target::find_in(const cJSON& section_value) const {
  const cJSON* value = scene ? element(section_value, *scene) : &section_value;
  if (value != nullptr && member != nullptr) value = last_member(*value, member->name);
  return value != nullptr && index ? element(*value, *index) : value;
}

Target parse_target(std::string_view text) {
  return parse(text, false);
}

Target parse_aipq_target(std::string_view text) {
  return parse(text, true);
}

}  // namespace pqclient
