// Single values: numbers in memory, and the names that stand for them in JSON.
#ifndef J2S_VALUES_H_
#define J2S_VALUES_H_

#include <string_view>

#include "j2s/j2s.h"
#include "j2s/member.h"

namespace j2s {

// 0 for a null structure and for types that are no numbers.
double read_number(const std::byte* structure, const Member& member);

// Does nothing for a null structure and for types that are no numbers.
void store_number(std::byte* structure, const Member& member, double value);

// Stores a list of items, `first` and those after it, in the elements of an array of plain numbers,
// as many as there are of both. An item that is no number is stored as NaN would be.
void store_numbers(std::byte* structure, const Member& array, const cJSON* first);

// Stores a text in a member that is a char array or a char*; a char* gets a copy, and what it
// pointed at is freed. Does nothing for a null structure.
void store_text(std::byte* structure, const Member& member, std::string_view text);

// Number of elements that the dynamic array's length member holds, as it stands there: it may be
// negative, or more than memory can hold. 0 for a null structure.
int read_length(const j2s_ctx& ctx, const std::byte* structure, const Member& array);

// The name of the member's first constant with that value; "INVALID" after a warning.
const char* enum_name(const j2s_ctx& ctx, const Member& member, int32_t value);

// The value of the member's constant of that name; -1 after a warning.
int32_t enum_value(const j2s_ctx& ctx, const Member& member, const char* name);

// The member's name for its enumeration's first constant, "INVALID" if it has none.
const char* first_enum_name(const j2s_ctx& ctx, const Member& member);

// As cJSON creates a number and sets one, but without undefined behaviour for NaN.
cJSON* create_number(double value);
void set_number(cJSON* item, double value);

}  // namespace j2s

#endif  // J2S_VALUES_H_
