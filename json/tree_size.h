// The size of a tree: how many items it has, and how long its printed text is.
#ifndef JSON_TREE_SIZE_H_
#define JSON_TREE_SIZE_H_

#include <cjson/cJSON.h>

#include <cstddef>
#include <optional>
#include <string_view>

namespace pq {

struct TreeSize {
  size_t items = 0;
  size_t text = 0;  // bytes, with every tab and escape; see measure()

  void operator+=(TreeSize other) {
    items += other.items;
    text += other.text;
  }
  void operator-=(TreeSize other) {
    items -= other.items;
    text -= other.text;
  }
};

// True if a document may have this size (limits.h).
bool fits(TreeSize size);

// The size of an item that is `depth` arrays and objects deep in its document, with all below it
// but without its own name. The text is counted as print_json() writes it, and never too short: a
// separator behind each item, also the last, and 24 bytes for a number that is not an integer. So
// an item can be taken out or put in and the document's size be known without another walk.
// A raw item has the text that it holds.
// Null: it fits into no document, or a level is too deep. Stops there.
std::optional<TreeSize> measure(const cJSON* item, size_t depth);

// The bytes that the parent's text needs around an item: separator, tabs and name.
// parent: an array or an object. depth: the item's.
size_t frame_size(const cJSON* parent, std::string_view name, size_t depth);

}  // namespace pq

#endif  // JSON_TREE_SIZE_H_
