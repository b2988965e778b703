// The client's own table of sections, member names and ranges of both documents. The board cuts
// numbers silently and drops unknown names, so values must be checked against this table before
// sending. Constant data; any thread may call.
#ifndef PQCLIENT_SCHEMA_H_
#define PQCLIENT_SCHEMA_H_

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pqclient {

// The board's two documents: the picture quality, and its variants for the AI scenes.
enum class Document { kPq, kAipq };

enum class MemberType { kText, kNumber };

struct Member {
  std::string_view name;
  MemberType type = MemberType::kNumber;
  std::int64_t min = 0;  // of a number, or of each entry of a table
  std::int64_t max = 0;
  int count = 1;    // entries; 1 is a single value, not a table of one
  int columns = 0;  // entries per row when printed: the table's own row if it has two dimensions
  std::span<const std::string_view> choices = {};  // the only valid texts; empty: any

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

// Null if there is none. Names are exact and case-sensitive.
const Section* find_section(std::string_view name);
const Member* find_member(const Section& section, std::string_view name);

// Up to three known names that may have been meant by `asked`, best first, without duplicates.
// Case is ignored, and part of a name ranks before a misspelt one.
std::vector<std::string_view> nearest_names(std::string_view asked,
                                            std::span<const std::string_view> known);

}  // namespace pqclient

#endif  // PQCLIENT_SCHEMA_H_
