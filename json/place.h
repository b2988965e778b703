// Places in a document, by JSON Pointer (RFC 6901): to take an item out, and to put one in.
//
// The patch library does the same inside its operations, but when memory runs out while it adds a
// member it has already removed the old one, loses the new one, and reports success. Pointers mean
// here what they mean there, to the odd ends: clients have documents that came about that way.
#ifndef JSON_PLACE_H_
#define JSON_PLACE_H_

#include <string>

#include "json/tree.h"

namespace pq {

struct JsonPlace {
  cJSON* parent = nullptr;  // the document's; null: the pointer leads nowhere
  std::string name;         // of the member, or the element's index
};

// The levels above the place have to be built. Never leads to the document itself: a pointer
// without a slash leads nowhere.
JsonPlace find_place(cJSON* document, const char* pointer);

// In a shallow tree: builds the items on the way, so that the place is found if it is there.
void build_path(cJSON* document, const char* pointer);

// The same, and all of the item that the pointer leads to. Both throw std::bad_alloc.
void build_item(cJSON* document, const char* pointer);

// Takes the item out of its parent; null when there is none.
JsonPtr take_item(const JsonPlace& place);

// Puts the item in: as the last member, after one of that name has been removed; before the element
// of that index, or behind the last one ("-"). Returns 0 or the patch library's status: 9 for a
// place that leads nowhere, 10 for an index beyond the end, 11 for one that is none. Throws
// std::bad_alloc.
int put_item(const JsonPlace& place, JsonPtr item);

}  // namespace pq

#endif  // JSON_PLACE_H_
