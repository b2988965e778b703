// What the two documents hold: the client's own table of sections, member names and ranges.
// The board cuts numbers silently and drops names that it does not know, so whoever sends a change
// checks it here first. Constant data; any thread may call.
#ifndef PQCLIENT_SCHEMA_H_
#define PQCLIENT_SCHEMA_H_

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pqclient {

// The board keeps two: the picture quality, and what the AI scenes make of it.
enum class Document { kPq, kAipq };

enum class MemberType { kText, kNumber };

struct Member {
  std::string_view name;
  MemberType type = MemberType::kNumber;
  std::int64_t min = 0;  // of a number, and of each entry of a table
  std::int64_t max = 0;
  int count = 1;    // entries; 1 is a single value, not a table of one
  int columns = 0;  // entries in a row when shown: the table's own row where it has two dimensions
  std::span<const std::string_view> choices = {};  // the only texts that make sense; none: any

  [[nodiscard]] bool is_table() const { return count > 1; }
};

struct Section {
  std::string_view name;
  std::span<const Member> members;  // in the order of the document
  bool has_scenes;                  // also in the AIPQ document, once for each AI scene
};

// The scenes of the AIPQ document, in its order.
inline constexpr std::array<std::string_view, 12> kScenes = {
    "nature-default", "nature-person", "nature-food",  "nature-building",
    "nature-sky",     "nature-plant",  "word-default", "word-person",
    "word-food",      "word-building", "word-sky",     "word-plant",
};

std::span<const Section> sections();

// Null when there is none. Names are exact, with their case.
const Section* find_section(std::string_view name);
const Member* find_member(const Section& section, std::string_view name);

// Up to three of the known names that someone may have meant by `asked`, best first, each once.
// Case does not count, and a part of a name is nearer than a misspelt one.
std::vector<std::string_view> nearest_names(std::string_view asked,
                                            std::span<const std::string_view> known);

}  // namespace pqclient

#endif  // PQCLIENT_SCHEMA_H_
