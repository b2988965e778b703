#include "json/tree.h"

#include <mutex>

#include "j2s/shallow_tree.h"

namespace pq {

JsonPtr parse_json(std::string_view text) {
  static std::mutex parser_mutex;
  const std::lock_guard lock(parser_mutex);
  const MemoryWatch memory;
  JsonPtr tree(cJSON_ParseWithLength(text.data(), text.size()));
  if (!tree) memory.check();
  return tree;
}

JsonPtr parse_shallow(const char* text) {
  const MemoryWatch memory;
  JsonPtr tree = j2s::parse_shallow(text);
  if (tree) return tree;
  memory.check();
  return parse_json(text);
}

TextPtr print_json(cJSON* tree) {
  if (tree == nullptr) return nullptr;
  const MemoryWatch memory;
  j2s_make_printable(tree, true);
  TextPtr text(cJSON_Print(tree));
  if (!text) memory.check();
  return text;
}

void add_to_object(cJSON* object, const char* key, JsonPtr item) {
  const MemoryWatch memory;
  if (cJSON_AddItemToObject(object, key, item.get())) {
    (void)item.release();  // the object owns it now
  } else {
    memory.check();
  }
}

}  // namespace pq
