// Places in a document, by JSON Pointer (RFC 6901): to find an item, to take one out, and to put
// one in.
//
// Pointers lead where the patch library's lead, including where it departs from the RFC: names
// match in any case, and an index may wrap around. The library itself is not used for this: it does
// not say how many items it passed, and when memory runs out while it adds a member it has already
// removed the old one, loses the new one, and reports success.
#ifndef JSON_PLACE_H_
#define JSON_PLACE_H_

#include <string>
#include <string_view>

#include "json/tree.h"
#include "json/tree_size.h"

namespace pq {

struct JsonPlace {
  cJSON* parent = nullptr;  // the document's; null: the pointer leads nowhere
  std::string name;         // of the member, or the element's index
  size_t depth = 0;         // how many arrays and objects contain an item at this place

  [[nodiscard]] bool leads_nowhere() const {
    return !cJSON_IsArray(parent) && !cJSON_IsObject(parent);
  }
};

// Searches of a document that is perhaps shallow (j2s/shallow_tree.h): what a search reaches is
// built. All searches throw std::bad_alloc.
class JsonSearch {
 public:
  // size: the document's. Kept up to date, as a built item may be measured as a little longer than
  // its text was.
  explicit JsonSearch(TreeSize& size) : size_(size) {}

  // The item that the pointer leads to; null for none. An empty pointer leads to the document.
  // found_depth: how deep the item is in the document.
  cJSON* find(cJSON* document, std::string_view pointer, size_t& found_depth);

  // Builds all of an item that was found at this depth. Null is left alone.
  void build(cJSON* item, size_t depth);

  // The first member of that name, in any case.
  cJSON* find_member(const cJSON* object, std::string_view name);

  // The element of that index, null beyond the end.
  cJSON* find_element(const cJSON* array, size_t index);

  // Items passed, characters of names compared beyond the first, and a share of what was built.
  [[nodiscard]] size_t steps() const { return steps_; }

 private:
  enum class Levels { kOne, kAll };

  void build(cJSON* item, size_t depth, Levels levels);
  cJSON* find_escaped(const cJSON* object, std::string_view part);

  TreeSize& size_;
  size_t steps_ = 0;

  friend JsonPlace find_place(cJSON* document, std::string_view pointer, JsonSearch& search);
};

// Never leads to the document itself: a pointer without a slash leads nowhere.
JsonPlace find_place(cJSON* document, std::string_view pointer, JsonSearch& search);

// The item at the place; null when there is none.
cJSON* item_at(const JsonPlace& place, JsonSearch& search);

// Puts the item in: as the last member of an object, which has none of that name; before the
// element of that index, or behind the last one ("-"). Returns 0 or the patch library's status: 9
// for a place that leads nowhere, 10 for an index beyond the end, 11 for an invalid one. Throws
// std::bad_alloc.
int put_item(const JsonPlace& place, JsonPtr item, JsonSearch& search);

// Puts the item into the array: before the element `next`, or behind the last one if that is null.
void put_before(cJSON* array, cJSON* next, JsonPtr item);

}  // namespace pq

#endif  // JSON_PLACE_H_
