// Checks before sending. They are needed because the board accepts anything: it cuts numbers to the
// width of the member, drops unknown names and sets missing members to zero.
// All throw Error kInput with the place, the value given and the values allowed.
#ifndef PQCLIENT_CHECK_H_
#define PQCLIENT_CHECK_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "pqclient/json.h"
#include "pqclient/target.h"

namespace pqclient {

// The values that a member takes, in words: "0 to 511", "1024 numbers, 0 to 65535 each", "a text".
std::string describe_values(const Member& member);

// Parses a value as a person types it, for a member or an entry: a whole number; on or off for a
// switch; a text without quotes; for a table all its entries with commas between them, with or
// without brackets. The result is checked.
JsonPtr parse_value(const Target& target, std::string_view text);

// A requested new value: absolute, or a step from the current one.
struct Assignment {
  Target target;          // a member or an entry
  JsonPtr value;          // checked; null: a step
  std::int64_t step = 0;  // added to the number, or to each entry of the table

  // Applies it to a section as the board has it. Throws Error kInput if a step leaves the range.
  void apply_to(JsonPtr& section_value) const;
};

// text: as for parse_value, or a step: "+5", "-5", "+=5", "-=5". For numbers that may be negative,
// -5 is the value and only -=5 is a step; +5 is refused as ambiguous.
Assignment parse_assignment(std::string_view place, std::string_view text);

// Checks a whole section: each member known, none missing, tables of the right length, numbers
// whole and in range; for an AIPQ section, in each scene. Values equal to the stored ones
// (`before`) pass unchecked, so one odd value does not block other changes.
void check_section(const Target& section, const cJSON& value, const cJSON& before);

}  // namespace pqclient

#endif  // PQCLIENT_CHECK_H_
