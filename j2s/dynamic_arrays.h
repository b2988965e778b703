// Dynamic arrays while they are loaded: the buffers, and the length members that count them.
//
// Members arrive in any order, and one length may count several arrays. So each array compares the
// length that the JSON wants with the one from before the load, and the length members change last:
// an array never has fewer elements than its length says.
#ifndef J2S_DYNAMIC_ARRAYS_H_
#define J2S_DYNAMIC_ARRAYS_H_

#include "j2s/j2s.h"
#include "j2s/member.h"

namespace j2s {

// True if the member counts the elements of a dynamic array. settle_lengths loads its item.
bool is_length(const j2s_ctx& ctx, const Member& member);

// The length that the JSON wants for the array: that of the length member's item, else the number
// of elements, or `current` where an index key lists only some of them.
int wanted_length(const j2s_ctx& ctx, const Member& pointer, const cJSON* item, const cJSON* parent,
                  int current);

// Gives the array a new zeroed buffer of `length` elements, owned by the context; the old one is
// released when `had_buffer`. The pointer becomes null if the length is negative, above
// kMaxArrayLength, or if there is no memory.
void replace_buffer(j2s_ctx& ctx, const Member& pointer, std::byte* structure, bool had_buffer,
                    int length);

// The last step of loading a structure: stores the lengths that the JSON names or implies.
// result: of the members. last: the one that failed, if any. Returns the result, or -1 after a
// message when an array has no item and fewer elements than its length would say. After any failure
// no length exceeds what its arrays have.
int settle_lengths(const j2s_ctx& ctx, int struct_index, const cJSON* json, std::byte* structure,
                   int result, int last);

}  // namespace j2s

#endif  // J2S_DYNAMIC_ARRAYS_H_
