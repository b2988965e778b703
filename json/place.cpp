#include "json/place.h"

#include <cjson/cJSON_Utils.h>

#include <cstddef>
#include <optional>
#include <string_view>

#include "j2s/shallow_tree.h"

namespace pq {
namespace {

constexpr int kNoSuchPlace = 9;
constexpr int kBeyondTheEnd = 10;
constexpr int kNoIndex = 11;

// A name without its escapes. Only in names that consist of "~0" alone they are what RFC 6901 makes
// of them: the library forgets to move what stands behind an escape.
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

size_t size_of(const cJSON* array) {
  return static_cast<size_t>(cJSON_GetArraySize(array));
}

int put_element(cJSON* array, std::string_view name, JsonPtr item) {
  size_t index = size_of(array);
  if (name != "-") {
    const std::optional<size_t> wanted = index_of(name);
    if (!wanted) return kNoIndex;
    if (*wanted > index) return kBeyondTheEnd;
    index = *wanted;
  }
  if (!cJSON_InsertItemInArray(array, static_cast<int>(index), item.get())) return kBeyondTheEnd;
  (void)item.release();  // the array owns it now
  return 0;
}

}  // namespace

JsonPlace find_place(cJSON* document, const char* pointer) {
  const std::string_view whole(pointer);
  const size_t slash = whole.rfind('/');
  if (slash == std::string_view::npos) return {};
  const std::string parent(whole.substr(0, slash));
  return {cJSONUtils_GetPointer(document, parent.c_str()),
          unescaped(std::string(whole.substr(slash + 1)))};
}

void build_path(cJSON* document, const char* pointer) {
  const std::string whole(pointer);
  for (size_t end = whole.find('/'); end != std::string::npos; end = whole.find('/', end + 1)) {
    cJSON* item = cJSONUtils_GetPointer(document, whole.substr(0, end).c_str());
    if (!j2s::expand(item)) throw std::bad_alloc();
  }
}

void build_item(cJSON* document, const char* pointer) {
  build_path(document, pointer);
  if (!j2s::expand_whole(cJSONUtils_GetPointer(document, pointer))) throw std::bad_alloc();
}

JsonPtr take_item(const JsonPlace& place) {
  if (cJSON_IsObject(place.parent)) {
    return JsonPtr(cJSON_DetachItemFromObject(place.parent, place.name.c_str()));
  }
  if (!cJSON_IsArray(place.parent)) return nullptr;
  const std::optional<size_t> index = index_of(place.name);
  if (!index || *index >= size_of(place.parent)) return nullptr;
  return JsonPtr(cJSON_DetachItemFromArray(place.parent, static_cast<int>(*index)));
}

int put_item(const JsonPlace& place, JsonPtr item) {
  if (cJSON_IsArray(place.parent)) return put_element(place.parent, place.name, std::move(item));
  if (!cJSON_IsObject(place.parent)) return kNoSuchPlace;
  cJSON_DeleteItemFromObject(place.parent, place.name.c_str());
  add_to_object(place.parent, place.name.c_str(), std::move(item));
  return 0;
}

}  // namespace pq
