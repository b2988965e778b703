#include "json/place.h"

#include <cstddef>
#include <new>
#include <optional>
#include <string_view>

#include "j2s/shallow_tree.h"
#include "json/limits.h"

namespace pq {
namespace {

constexpr int kNoSuchPlace = 9;
constexpr int kBeyondTheEnd = 10;
constexpr int kNoIndex = 11;

// A name without its escapes, which RFC 6901 agrees with only in names that consist of "~0" alone:
// the library forgets to move the characters behind an escape.
std::string unescaped(std::string name) {
  size_t to = 0;
  for (size_t from = 0; from < name.size(); ++to, ++from) {
    if (name[from] != '~') continue;
    const char escape = from + 1 < name.size() ? name[from + 1] : '\0';
    if (escape == '0') {
      name[to] = '~';
    } else if (escape == '1') {
      name[to + 1] = '/';
    } else {
      return name;
    }
    ++from;
  }
  name.resize(to);
  return name;
}

// An index wraps around, as it does in the library; an empty name is the first element's.
std::optional<size_t> index_of(std::string_view name) {
  if (name.size() > 1 && name[0] == '0') return std::nullopt;
  size_t index = 0;
  for (const char digit : name) {
    if (digit < '0' || digit > '9') return std::nullopt;
    index = 10 * index + static_cast<size_t>(digit - '0');
  }
  return index;
}

// The daemon runs in the C locale, where the library ignores the case of these letters alone.
char in_lower_case(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool same_letter(char a, char b) {
  return in_lower_case(a) == in_lower_case(b);
}

// Takes the next character off a pointer's part, resolving escapes; '\0' for an invalid one, which
// no name has.
char take_character(std::string_view& part) {
  char character = part[0];
  part.remove_prefix(1);
  if (character != '~') return character;
  character = part.empty() ? '\0' : part[0];
  if (character != '0' && character != '1') return '\0';
  part.remove_prefix(1);
  return character == '0' ? '~' : '/';
}

bool is_named(const char* name, std::string_view part, size_t& steps) {
  if (name == nullptr) return false;
  for (; *name != '\0' && !part.empty(); ++name, ++steps) {
    if (!same_letter(*name, take_character(part))) return false;
  }
  return *name == '\0' && part.empty();
}

bool same_name(const char* name, std::string_view wanted, size_t& steps) {
  if (name == nullptr) return false;
  for (const char letter : wanted) {
    if (!same_letter(*name, letter)) return false;  // also at the name's end
    ++name;
    ++steps;
  }
  return *name == '\0';
}

int put_element(cJSON* array, std::string_view name, JsonPtr item, JsonSearch& search) {
  cJSON* next = nullptr;
  if (name != "-") {
    const std::optional<size_t> index = index_of(name);
    if (!index) return kNoIndex;
    next = search.find_element(array, *index);
    const bool appends = next == nullptr;
    if (appends && *index > 0 && search.find_element(array, *index - 1) == nullptr) {
      return kBeyondTheEnd;
    }
  }
  put_before(array, next, std::move(item));
  return 0;
}

}  // namespace

// A level is built for each part of the pointer. But on a long way down all is built at once: each
// level by itself would copy the text of all that are deeper.
cJSON* JsonSearch::find(cJSON* document, std::string_view pointer, size_t& found_depth) {
  constexpr size_t kLongWay = 3;
  cJSON* item = document;
  found_depth = 0;
  while (item != nullptr && !pointer.empty() && pointer[0] == '/') {
    build(item, found_depth, found_depth < kLongWay ? Levels::kOne : Levels::kAll);
    pointer.remove_prefix(1);
    const std::string_view part = pointer.substr(0, pointer.find('/'));
    pointer.remove_prefix(part.size());
    ++found_depth;
    if (cJSON_IsArray(item)) {
      const std::optional<size_t> index = index_of(part);
      item = index ? find_element(item, *index) : nullptr;
    } else {
      item = cJSON_IsObject(item) ? find_escaped(item, part) : nullptr;
    }
  }
  return item;
}

void JsonSearch::build(cJSON* item, size_t depth) {
  build(item, depth, Levels::kAll);
}

void JsonSearch::build(cJSON* item, size_t depth, Levels levels) {
  if (item == nullptr || (levels == Levels::kOne && !cJSON_IsRaw(item))) return;
  constexpr size_t kStepsOfAnItem = 8;
  constexpr size_t kTextOfAStep = 16;  // bytes
  const TreeSize before = measure(item, depth).value_or(TreeSize{});
  const bool built = levels == Levels::kOne ? j2s::expand(item) : j2s::expand_whole(item);
  if (!built) throw std::bad_alloc();
  // A level too deep, or too much: the document does not fit any more.
  constexpr TreeSize kTooMuch{kMaxItems + 1, kMaxDocumentSize + 1};
  const TreeSize after = measure(item, depth).value_or(kTooMuch);
  size_ += after;
  size_ -= before;
  steps_ += before.items + before.text / kTextOfAStep;
  if (after.text != before.text) steps_ += before.items * kStepsOfAnItem;
}

cJSON* JsonSearch::find_escaped(const cJSON* object, std::string_view part) {
  cJSON* item = object->child;
  for (; item != nullptr && !is_named(item->string, part, steps_); item = item->next)
    ++steps_;
  return item;
}

cJSON* JsonSearch::find_member(const cJSON* object, std::string_view name) {
  cJSON* item = object->child;
  for (; item != nullptr && !same_name(item->string, name, steps_); item = item->next)
    ++steps_;
  return item;
}

cJSON* JsonSearch::find_element(const cJSON* array, size_t index) {
  cJSON* item = array->child;
  for (; item != nullptr && index > 0; --index, ++steps_)
    item = item->next;
  return item;
}

JsonPlace find_place(cJSON* document, std::string_view pointer, JsonSearch& search) {
  const size_t slash = pointer.rfind('/');
  if (slash == std::string_view::npos) return {};
  size_t depth = 0;
  cJSON* parent = search.find(document, pointer.substr(0, slash), depth);
  search.build(parent, depth, JsonSearch::Levels::kOne);
  return {parent, unescaped(std::string(pointer.substr(slash + 1))), depth + 1};
}

cJSON* item_at(const JsonPlace& place, JsonSearch& search) {
  if (cJSON_IsObject(place.parent)) return search.find_member(place.parent, place.name);
  if (!cJSON_IsArray(place.parent)) return nullptr;
  const std::optional<size_t> index = index_of(place.name);
  return index ? search.find_element(place.parent, *index) : nullptr;
}

// The library's own insertion would walk the array again.
void put_before(cJSON* array, cJSON* next, JsonPtr item) {
  if (next == nullptr) {
    if (cJSON_AddItemToArray(array, item.get())) (void)item.release();
    return;
  }
  const bool first = array->child == next;
  cJSON* element = item.release();  // the array owns it now
  element->next = next;
  element->prev = next->prev;  // of the first element: the last one
  next->prev = element;
  (first ? array->child : element->prev->next) = element;
}

int put_item(const JsonPlace& place, JsonPtr item, JsonSearch& search) {
  if (cJSON_IsArray(place.parent)) {
    return put_element(place.parent, place.name, std::move(item), search);
  }
  if (!cJSON_IsObject(place.parent)) return kNoSuchPlace;
  add_to_object(place.parent, place.name.c_str(), std::move(item));
  return 0;
}

}  // namespace pq
