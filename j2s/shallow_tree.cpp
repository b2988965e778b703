#include "j2s/shallow_tree.h"

#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

#include "j2s/json_cursor.h"

namespace j2s {
namespace {

using pq::JsonPtr;

// Levels of a document that nearly every request looks into: its one or two members, and the
// sections or scenes in them. One walk builds both.
constexpr int kLevelsToParse = 2;
constexpr int kAllLevels = std::numeric_limits<int>::max();

// Builds the value and that many levels of objects and arrays, itself the first.
JsonPtr build_value(JsonCursor& cursor, int levels);

bool is_container(const JsonCursor& cursor) {
  return *cursor.position() == '{' || *cursor.position() == '[';
}

char* copy_of(std::string_view text) {
  auto* copy = static_cast<char*>(cJSON_malloc(text.size() + 1));
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  return copy;
}

// A string or a raw item.
JsonPtr make_text(int type, std::string_view text) {
  JsonPtr item(cJSON_CreateNull());
  if (item == nullptr) return nullptr;
  item->type = type;
  item->valuestring = copy_of(text);
  return item->valuestring == nullptr ? nullptr : std::move(item);
}

JsonPtr make_raw(const SkippedValue& value) {
  JsonPtr item = make_text(cJSON_Raw, value.text);
  if (item == nullptr) return nullptr;
  item->valueint = static_cast<int>(value.values);
  item->valuedouble = static_cast<double>(value.name_and_text_bytes);
  return item;
}

// A value inside of what is built. On the last level it stays text if it can.
JsonPtr build_child(JsonCursor& cursor, int levels) {
  if (levels > 0 || !is_container(cursor)) return build_value(cursor, levels);
  JsonCursor from_here(cursor.position(), cursor.depth());
  SkippedValue value;
  if (!cursor.skip(value)) return nullptr;
  const bool can_stay = value.as_printed && !value.has_index_keys;
  return can_stay ? make_raw(value) : build_value(from_here, kAllLevels);
}

JsonPtr build_object(JsonCursor& cursor, int levels) {
  JsonPtr object(cJSON_CreateObject());
  if (object == nullptr || !cursor.open('{')) return nullptr;
  std::string_view name;
  while (cursor.next_member(name)) {
    const bool tells_places = !name.empty() && name[0] == '@';
    JsonPtr item = build_child(cursor, tells_places ? kAllLevels : levels - 1);
    if (item == nullptr) return nullptr;
    item->string = copy_of(name);
    if (item->string == nullptr || !cJSON_AddItemToArray(object.get(), item.get())) return nullptr;
    (void)item.release();
  }
  return cursor.good() ? std::move(object) : nullptr;
}

JsonPtr build_array(JsonCursor& cursor, int levels) {
  JsonPtr array(cJSON_CreateArray());
  if (array == nullptr || !cursor.open('[')) return nullptr;
  bool complete = true;
  const auto add = [&](JsonPtr item) {
    complete = complete && item != nullptr && cJSON_AddItemToArray(array.get(), item.get());
    if (complete) (void)item.release();  // the array owns it now
  };
  const auto add_integer = [&](int32_t number) { add(JsonPtr(cJSON_CreateNumber(number))); };
  cursor.read_integers(add_integer);
  while (complete && cursor.next_element()) {
    add(build_child(cursor, levels - 1));
    cursor.read_integers(add_integer);
  }
  return complete && cursor.good() ? std::move(array) : nullptr;
}

JsonPtr build_string(JsonCursor& cursor) {
  std::string_view text;
  return cursor.read_string(text) ? make_text(cJSON_String, text) : nullptr;
}

JsonPtr build_value(JsonCursor& cursor, int levels) {
  double number = 0;
  switch (*cursor.position()) {
    case '{':
      return build_object(cursor, levels);
    case '[':
      return build_array(cursor, levels);
    case '"':
      return build_string(cursor);
    case 't':
      return cursor.skip() ? JsonPtr(cJSON_CreateTrue()) : nullptr;
    case 'f':
      return cursor.skip() ? JsonPtr(cJSON_CreateFalse()) : nullptr;
    case 'n':
      return cursor.skip() ? JsonPtr(cJSON_CreateNull()) : nullptr;
    default:
      return cursor.read_number(number) ? JsonPtr(cJSON_CreateNumber(number)) : nullptr;
  }
}

// The depth of a printed text, by the tabs that begin its second line. Any number will do for a
// text without a second line; a wrong one costs time, since nothing below seems to be as printed.
int depth_of(const char* text) {
  const size_t brackets = std::strspn(text, "{[");
  if (text[brackets] != '\n') return 0;
  return static_cast<int>(std::strspn(text + brackets + 1, "\t")) - static_cast<int>(brackets);
}

bool build_in_place(cJSON* item, int levels) {
  if (!cJSON_IsRaw(item)) return true;
  JsonCursor cursor(item->valuestring, depth_of(item->valuestring));
  JsonPtr built = build_value(cursor, levels);
  if (built == nullptr) return false;
  item->type = (item->type & ~0xff) | built->type;
  std::swap(item->child, built->child);
  std::swap(item->valuestring, built->valuestring);
  return true;
}

}  // namespace

JsonPtr parse_shallow(const char* text) {
  JsonCursor cursor(text);
  return is_container(cursor) ? build_value(cursor, kLevelsToParse) : nullptr;
}

JsonPtr parse_whole(const char* text) {
  JsonCursor cursor(text);
  return build_value(cursor, kAllLevels);
}

bool expand(cJSON* item) {
  return build_in_place(item, 1);
}

bool expand_whole(cJSON* item) {
  if (item == nullptr) return true;
  if (!build_in_place(item, kAllLevels)) return false;
  for (cJSON* child = item->child; child != nullptr; child = child->next) {
    if (!expand_whole(child)) return false;
  }
  return true;
}

}  // namespace j2s
