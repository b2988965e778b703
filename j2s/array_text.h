// Arrays of integers as one text each, for trees that are built only to be printed. A real array
// has an item for each number, which costs twenty times as much and yields the same bytes.
#ifndef J2S_ARRAY_TEXT_H_
#define J2S_ARRAY_TEXT_H_

#include "j2s/member.h"
#include "j2s/walk.h"

namespace j2s {

// A raw item that prints as the array of numbers at `structure` would; null when its elements are
// none that have a text here (integers of at most 32 bits, which cJSON prints digit by digit), or
// when memory runs out.
JsonPtr array_to_text(const Member& array, const std::byte* structure, ArrayForm form);

}  // namespace j2s

#endif  // J2S_ARRAY_TEXT_H_
