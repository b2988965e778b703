#include "pqclient/target.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <utility>
#include <vector>

#include "pqclient/error.h"

namespace pqclient {
namespace {

constexpr std::string_view kAi = "ai";

// Removes and returns the part before the first slash.
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

std::vector<std::string_view> names_of(std::span<const Member> members) {
  std::vector<std::string_view> names(members.size());
  std::ranges::transform(members, names.begin(), &Member::name);
  return names;
}

// Suggestions for a member given without its section: "csc/cscBrightness".
std::vector<std::string> places_like(std::string_view name) {
  std::vector<std::string_view> known;
  for (const Section& section : sections())
    std::ranges::copy(names_of(section.members), std::back_inserter(known));
  std::vector<std::string> places;
  for (const std::string_view member : nearest_names(name, known)) {
    const auto owner = std::ranges::find_if(
        sections(), [&](const Section& section) { return find_member(section, member); });
    places.push_back(std::string(owner->name).append("/").append(member));
  }
  return places;
}

[[noreturn]] void refuse_section(std::string_view name) {
  const auto places = places_like(name);
  throw Error(ErrorKind::kInput, "there is no section \"" + std::string(name) + "\": " +
                                     (places.empty() ? "" : "nearest: " + list(places) + "; ") +
                                     "sections are csc, dci, acm, gamma, sharp, ai/dci and ai/acm");
}

const Section& section_named(std::string_view name) {
  if (const Section* section = find_section(name)) return *section;
  refuse_section(name);
}

const Section& ai_section_named(std::string_view name) {
  const Section* section = find_section(name);
  if (section != nullptr && section->has_scenes) return *section;
  throw Error(ErrorKind::kInput,
              "there is no \"ai/" + std::string(name) + "\": use ai/dci or ai/acm");
}

const Member& member_named(const Section& section, std::string_view name) {
  if (const Member* member = find_member(section, name)) return *member;
  const auto near = nearest_names(name, names_of(section.members));
  const std::string section_name(section.name);
  throw Error(ErrorKind::kInput,
              "section " + section_name + " has no member \"" + std::string(name) + "\": " +
                  (near.empty() ? "see pqctl list " + section_name : "nearest: " + list(near)));
}

// Empty if the text is not a whole number.
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
  const auto near = nearest_names(name, kScenes);
  throw Error(ErrorKind::kInput, "there is no scene \"" + std::string(name) + "\": " +
                                     (near.empty() ? "" : "nearest: " + list(near) + "; ") +
                                     "use 0 to 11 or one of " + list(kScenes));
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
                                     "\": valid are 0 to " + std::to_string(member.count - 1));
}

Target whole(Document document, std::string_view section) {
  return {document, find_section(section), {}, nullptr, {}};
}

}  // namespace

std::string Target::text() const {
  std::string text(document == Document::kAipq ? "ai/" : "");
  text.append(section->name);
  if (scene) text.append("/").append(kScenes.at(static_cast<std::size_t>(*scene)));
  if (member != nullptr) text.append("/").append(member->name);
  if (index) text.append("/").append(std::to_string(*index));
  return text;
}

std::string Target::pointer() const {
  std::string text = section_pointer();
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

void Target::replace_in(JsonPtr& section_value, JsonPtr value) const {
  if (!scene && member == nullptr) {
    section_value = std::move(value);
    return;
  }
  Target above = *this;
  if (index) {
    above.index.reset();
  } else if (member != nullptr) {
    above.member = nullptr;
  } else {
    above.scene.reset();
  }
  // The caller owns the tree and may change it; only the look-up is const.
  auto* parent = const_cast<cJSON*>(above.find_in(*section_value));
  const bool is_member = member != nullptr && !index;
  const bool is_done =
      parent != nullptr &&
      (is_member ? cJSON_ReplaceItemInObjectCaseSensitive(parent, std::string(member->name).c_str(),
                                                          value.get())
                 : cJSON_ReplaceItemInArray(parent, index ? *index : *scene, value.get())) != 0;
  if (!is_done) {
    throw Error(ErrorKind::kBadAnswer, "the board's document has no " + text() + " to change");
  }
  (void)value.release();
}

Target parse_target(std::string_view text) {
  if (text.starts_with('/')) text.remove_prefix(1);
  Target target;
  std::string_view step = take_step(text);
  if (step == kAi) {
    target.document = Document::kAipq;
    target.section = &ai_section_named(take_step(text));
    if (!text.empty()) target.scene = scene_named(take_step(text));
  } else {
    target.section = &section_named(step);
  }
  if (!text.empty()) target.member = &member_named(*target.section, take_step(text));
  if (!text.empty()) target.index = index_in(*target.member, text);
  return target;
}

std::span<const Target> sections_in_writing_order() {
  static const std::array order = {
      whole(Document::kPq, "gamma"), whole(Document::kPq, "dci"), whole(Document::kPq, "acm"),
      whole(Document::kPq, "sharp"), whole(Document::kPq, "csc"), whole(Document::kAipq, "dci"),
      whole(Document::kAipq, "acm"),
  };
  return order;
}

}  // namespace pqclient
