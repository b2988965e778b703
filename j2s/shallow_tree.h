// Trees of which only some levels are built. An object or array that is not built is a raw item
// with its text, just as cJSON_Print writes it at that place: such a tree prints as the whole one
// would, and the mapping loads it. A value in any other form is built.
//
// A raw item's valueint is the number of values in it, with itself, its valuedouble the number of
// bytes in the names and texts. Other raw items have 0 there: their text has not been read.
//
// Texts end with a 0. Nothing throws; an AllocationWatch tells when memory ran out (base/memory.h).
#ifndef J2S_SHALLOW_TREE_H_
#define J2S_SHALLOW_TREE_H_

#include "j2s/json_owner.h"

namespace j2s {

// The object or array that is the text's first value, and the objects and arrays in it; what these
// hold is not built, but for index keys ("@NAME_index") and what has some in it. Null for what
// json_cursor.h does not accept.
pq::JsonPtr parse_shallow(const char* text);

// True if the item is a raw one that was made here: its text is JSON without index keys.
inline bool is_known_json(const cJSON* item) {
  return cJSON_IsRaw(item) && item->valueint > 0;
}

// The whole value; null as above.
pq::JsonPtr parse_whole(const char* text);

// Builds one more level of a raw item, or all of them. Any other item, and null, stay as they are.
// False: there was no memory for it, and the item is as it was.
bool expand(cJSON* item);
bool expand_whole(cJSON* item);

}  // namespace j2s

#endif  // J2S_SHALLOW_TREE_H_
