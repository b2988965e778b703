#include "json/tree.h"

#include <cstdlib>
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
  TextPtr text(cJSON_Print(tree));
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
