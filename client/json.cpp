#include "pqclient/json.h"

#include <mutex>
#include <new>

namespace pqclient {

namespace {

// The parser keeps its last error position in a process-wide variable.
std::mutex parser_mutex;

// Copies and frees the text.
std::string taken(char* printed) {
  struct FreeText {
    void operator()(char* text) const { cJSON_free(text); }
  };
  const std::unique_ptr<char, FreeText> text(printed);
  if (!text) throw std::bad_alloc();
  return text.get();
}

}  // namespace

JsonPtr parse_json(std::string_view text) {
  const std::lock_guard lock(parser_mutex);
  return JsonPtr(cJSON_ParseWithLength(text.data(), text.size()));
}

JsonPtr parse_whole_json(const std::string& text) {
  const std::lock_guard lock(parser_mutex);
  return JsonPtr(cJSON_ParseWithOpts(text.c_str(), nullptr, 1));
}

std::string print_json(const cJSON& tree) {
  return taken(cJSON_PrintUnformatted(&tree));
}

std::string print_json_for_people(const cJSON& tree) {
  return taken(cJSON_Print(&tree));
}

const cJSON* last_member(const cJSON& object, std::string_view name) {
  const cJSON* found = nullptr;
  for (const cJSON* item = object.child; item != nullptr; item = item->next) {
    if (item->string != nullptr && name == item->string) found = item;
  }
  return found;
}

const cJSON* element(const cJSON& array, int index) {
  const cJSON* item = cJSON_IsArray(&array) != 0 && index >= 0 ? array.child : nullptr;
  for (; item != nullptr && index > 0; --index)
    item = item->next;
  return item;
}

bool is_identical(const cJSON& one, const cJSON& other) {
  return print_json(one) == print_json(other);
}

JsonPtr copy_json(const cJSON& tree) {
  JsonPtr copy(cJSON_Duplicate(&tree, 1));
  if (!copy) throw std::bad_alloc();
  return copy;
}

JsonPtr make_string(std::string_view text) {
  JsonPtr item(cJSON_CreateString(std::string(text).c_str()));
  if (!item) throw std::bad_alloc();
  return item;
}

std::string quoted_text(std::string_view text) {
  return print_json(*make_string(text));
}

void add_member(cJSON& object, const char* name, JsonPtr item) {
  if (cJSON_AddItemToObject(&object, name, item.get()) == 0) throw std::bad_alloc();
  (void)item.release();
}

void add_element(cJSON& array, JsonPtr item) {
  if (cJSON_AddItemToArray(&array, item.get()) == 0) throw std::bad_alloc();
  (void)item.release();
}

}  // namespace pqclient
