// Dynamic arrays while they are loaded: the buffers and the length member that counts them.
#ifndef J2S_DYNAMIC_ARRAYS_H_
#define J2S_DYNAMIC_ARRAYS_H_

#include "j2s/j2s.h"
#include "j2s/member.h"

namespace j2s {

// Sets the length member `len_obj` to `length` and gives every dynamic array that it counts a new
// zeroed buffer of that many elements, owned by the context; the old ones are released. An array
// whose buffer can't be had, or whose length is negative or above kLongestArray, becomes null.
//
// All at once, because members arrive in any order: a length that ran ahead of one of its arrays
// would let the walk write behind that array's end.
void resize_dynamic_arrays(j2s_ctx& ctx, int len_obj, std::byte* structure, int length);

}  // namespace j2s

#endif  // J2S_DYNAMIC_ARRAYS_H_
