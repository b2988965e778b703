// Whether a value may be sent: the board takes anything, cuts numbers to the width of the member,
// drops names that it does not know and sets to zero what is missing.
// All throw Error kInput that says where, what was given and what would be right.
#ifndef PQCLIENT_CHECK_H_
#define PQCLIENT_CHECK_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "pqclient/json.h"
#include "pqclient/target.h"

namespace pqclient {

// What a member can be, in words: "0 to 511", "1024 numbers, 0 to 65535 each", "a text".
std::string describe_values(const Member& member);

// A value as typed by a person, for a member or an entry: a whole number, on or off for a switch, a
// text without quotes, or for a table all its entries with commas between them, in brackets or not.
// Comes back checked.
JsonPtr parse_value(const Target& target, std::string_view text);

// What a person wants a place to be: a value, or a step from what it is.
struct Assignment {
  Target target;          // a member or an entry
  JsonPtr value;          // checked; null: a step
  std::int64_t step = 0;  // added to the number, or to each entry of the table

  // Makes it so in a section as the board has it. Throws Error kInput when a step leaves the range.
  void apply_to(JsonPtr& section_value) const;
};

// text: as for parse_value, or a step: "+5", "-5", "+=5", "-=5". Where a number may be negative, -5
// is that value, and only -=5 is a step; +5 is refused there, because either may be meant.
Assignment parse_assignment(std::string_view place, std::string_view text);

// All of a section: each member known, none missing, tables of the right length, numbers whole and
// in their range; of an AIPQ section each scene so. What `before`, the section as the board has it,
// holds already passes, so that an odd value does not stand in the way of changing another one.
void check_section(const Target& section, const cJSON& value, const cJSON& before);

}  // namespace pqclient

#endif  // PQCLIENT_CHECK_H_
