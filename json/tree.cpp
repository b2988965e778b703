#include "json/tree.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/fair_mutex.h"
#include "j2s/shallow_tree.h"

namespace pq {
namespace {

// Before main: cJSON allocates nothing yet.
[[maybe_unused]] const bool allocations_are_noted = [] {
  cJSON_Hooks hooks{noting_malloc, std::free};
  cJSON_InitHooks(&hooks);
  return true;
}();

FairMutex parser_mutex;

// At least the bytes that printing takes, but for numbers of more digits than one item allows for.
// A print buffer that has to grow is copied, and both are there meanwhile.
size_t printed_size(const cJSON* item, size_t depth) {
  constexpr size_t kAroundAnItem = 32;  // its quotes, comma, line break, or its digits
  size_t size = 0;
  for (; item != nullptr; item = item->next) {
    size += kAroundAnItem + depth;
    if (item->string != nullptr) size += std::strlen(item->string);
    if (item->valuestring != nullptr) size += std::strlen(item->valuestring);
    size += printed_size(item->child, depth + 1);
  }
  return size;
}

// Far more than a document has; a larger text lets its buffer grow.
int first_buffer_size(const cJSON* tree) {
  constexpr size_t kMax = size_t{1024} * 1024;
  return static_cast<int>(std::min(printed_size(tree, 0), kMax));
}

}  // namespace

JsonPtr parse_json(std::string_view text) {
  const FairMutexLock lock(parser_mutex);
  const AllocationWatch memory;
  JsonPtr tree(cJSON_ParseWithLength(text.data(), text.size()));
  if (!tree) memory.throw_if_failed();
  return tree;
}

JsonPtr parse_quickly(std::string_view text) {
  const AllocationWatch memory;
  JsonPtr tree = j2s::parse_whole(std::string(text).c_str());
  if (tree) return tree;
  memory.throw_if_failed();
  return parse_json(text);
}

JsonPtr parse_shallow(const char* text) {
  const AllocationWatch memory;
  JsonPtr tree = j2s::parse_shallow(text);
  if (tree) return tree;
  memory.throw_if_failed();
  return parse_json(text);
}

TextPtr print_json(cJSON* tree) {
  if (tree == nullptr) return nullptr;
  const AllocationWatch memory;
  j2s_make_printable(tree, true);
  TextPtr text(cJSON_PrintBuffered(tree, first_buffer_size(tree), true));
  if (!text) memory.throw_if_failed();
  return text;
}

void add_to_object(cJSON* object, const char* key, JsonPtr item) {
  const AllocationWatch memory;
  if (cJSON_AddItemToObject(object, key, item.get())) {
    (void)item.release();  // the object owns it now
  } else {
    memory.throw_if_failed();
  }
}

}  // namespace pq
