// Whether a value may be sent: the board takes anything, cuts numbers to the width of the member,
// drops names that it does not know and sets to zero what is missing.
// All throw Error kInput that says where, what was given and what would be right.
#ifndef PQCLIENT_CHECK_H_
#define PQCLIENT_CHECK_H_

#include <string>
#include <string_view>

#include "pqclient/json.h"
#include "pqclient/target.h"

namespace pqclient {

// What a member can be, in words: "0 to 511", "1024 numbers, 0 to 65535 each", "a text".
std::string describe_values(const Member& member);

// A value as typed by a person, for a member or an entry: a whole number, a text without quotes, or
// for a table all its entries with commas between them, in brackets or not. Comes back checked.
JsonPtr parse_value(const Target& target, std::string_view text);

// All members of a section: each known, none missing, tables of the right length, numbers whole and
// in their range. A value that `before`, the section as the board has it, holds already passes, so
// that an odd value does not stand in the way of changing another one.
void check_section(const Section& section, const cJSON& value, const cJSON& before);

}  // namespace pqclient

#endif  // PQCLIENT_CHECK_H_
