// Ownership of cJSON trees, and a few accessors that cJSON lacks.
#ifndef PQCLIENT_JSON_H_
#define PQCLIENT_JSON_H_

#include <cjson/cJSON.h>

#include <memory>
#include <string>
#include <string_view>

namespace pqclient {

struct DeleteJson {
  void operator()(cJSON* tree) const { cJSON_Delete(tree); }
};
// A tree with everything below it.
using JsonPtr = std::unique_ptr<cJSON, DeleteJson>;

// Null if the text is not JSON. Anything after the first value is ignored.
JsonPtr parse_json(std::string_view text);
// Also null if anything but blanks follows.
JsonPtr parse_whole_json(const std::string& text);

// One line without blanks.
std::string print_json(const cJSON& tree);

// Indented, each array of numbers on one line.
std::string print_json_for_people(const cJSON& tree);

// The last member of exactly that name, or null. Last, because a reply may contain a name twice.
const cJSON* last_member(const cJSON& object, std::string_view name);

// Element of an array, or null.
const cJSON* element(const cJSON& array, int index);

// True if both print alike: unlike cJSON_Compare(), the order of members counts.
bool is_identical(const cJSON& one, const cJSON& other);

JsonPtr copy_json(const cJSON& tree);

JsonPtr make_string(std::string_view text);

// For messages: in quotes, control characters escaped. A board's text must never reach a terminal
// unescaped.
std::string quoted_text(std::string_view text);

// Moves the item into the object or array.
void add_member(cJSON& object, const char* name, JsonPtr item);
void add_element(cJSON& array, JsonPtr item);

}  // namespace pqclient

#endif  // PQCLIENT_JSON_H_
