// Mutates the JSON in one line of an input as a tree: randomly changed bytes would seldom still be
// a request. A third of the mutations are the fuzzer's own, on bytes, for text that is not JSON.
#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include "base/owner.h"
#include "j2s/generated_tables.h"
#include "json/tree.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t max_size);

namespace fuzz {
namespace {

using pq::JsonPtr;
using Random = std::minstd_rand;

constexpr std::array kOperations = {"add", "remove", "replace", "move", "copy", "test"};
constexpr std::array kKeys = {
    "op",          "path", "from", "value", "platform", "toolversion", "pq_tuning_param",
    "@four_index", "list"};
constexpr std::array kSteps = {"", "-", "0", "1", "2", "3", "-1", "01", "~0", "~1", "4294967296"};
// Values at the limits of types, and of every kind.
constexpr std::string_view kValues =
    R"([0, -1, 1, 255, 300, 65535, 65536, 2147483648, -2147483649, 1e19, -1e300, 0.5, null, true, "",
        "x", "LOW_LATENCY_MODE", [], {}, [1,2,3,4], [[1],[2]], {"op":"remove"}])";

template <typename List>
auto pick(const List& list, Random& random) {
  return *(std::begin(list) + random() % std::size(list));
}

// A member's name, sometimes in the form of the key that lists an array's indices.
std::string random_key(Random& random) {
  if (random() % 3 == 0) return pick(kKeys, random);
  const std::string name = pick(j2s::generated_tables().objs, random).name;
  return random() % 6 == 0 ? "@" + name + "_index" : name;
}

std::string random_path(Random& random) {
  std::string path;
  for (auto steps = random() % 4; steps > 0; --steps)
    path += "/" + (random() % 3 == 0 ? std::string(pick(kSteps, random)) : random_key(random));
  return path;
}

// A plausible value for a key.
JsonPtr random_value(const char* key, Random& random) {
  const std::string_view name = key == nullptr ? "" : key;
  if (random() % 8 != 0) {
    if (name == "op") return JsonPtr(cJSON_CreateString(pick(kOperations, random)));
    if (name == "path" || name == "from") {
      return JsonPtr(cJSON_CreateString(random_path(random).c_str()));
    }
  }
  static const JsonPtr values = pq::parse_json(kValues);
  const auto count = static_cast<unsigned>(cJSON_GetArraySize(values.get()));
  const cJSON* value = cJSON_GetArrayItem(values.get(), static_cast<int>(random() % count));
  return JsonPtr(cJSON_Duplicate(value, true));
}

struct Place {
  cJSON* parent;  // null for the root
  cJSON* item;
};

void collect(cJSON* parent, cJSON* item, std::vector<Place>& places) {
  places.push_back({parent, item});
  for (cJSON* child = item->child; child != nullptr; child = child->next)
    collect(item, child, places);
}

JsonPtr random_operation(Random& random) {
  JsonPtr operation(cJSON_CreateObject());
  for (const char* key : {"op", "path", "from", "value"}) {
    pq::add_to_object(operation.get(), key, random_value(key, random));
  }
  return operation;
}

void add(cJSON* parent, JsonPtr item, Random& random) {
  if (cJSON_IsObject(parent)) {
    pq::add_to_object(parent, random_key(random).c_str(), std::move(item));
  } else if (cJSON_AddItemToArray(parent, item.get())) {
    (void)item.release();
  }
}

void mutate(JsonPtr& root, Random& random) {
  std::vector<Place> places;
  collect(nullptr, root.get(), places);
  const Place place = pick(places, random);
  const bool list = cJSON_IsArray(place.item) || cJSON_IsObject(place.item);
  switch (random() % 6) {
    case 0:  // adds a member or element
      add(list ? place.item : root.get(),
          random() % 2 == 0 ? random_operation(random) : random_value(nullptr, random), random);
      break;
    case 1:  // removes one
      if (place.parent != nullptr) {
        JsonPtr(cJSON_DetachItemViaPointer(place.parent, place.item)).reset();
      }
      break;
    case 2:  // copies one anywhere
      add(list ? place.item : root.get(),
          JsonPtr(cJSON_Duplicate(pick(places, random).item, places.size() < 1000)), random);
      break;
    case 3:  // renames one
      if (cJSON_IsObject(place.parent)) {
        JsonPtr item(cJSON_DetachItemViaPointer(place.parent, place.item));
        add(place.parent, std::move(item), random);
      }
      break;
    default:  // replaces a value
      if (place.parent != nullptr) {
        JsonPtr value = random_value(place.item->string, random);
        if (cJSON_IsObject(place.parent)) {
          const std::string key = place.item->string;
          cJSON_ReplaceItemInObjectCaseSensitive(place.parent, key.c_str(), value.release());
        } else {
          cJSON_ReplaceItemViaPointer(place.parent, place.item, value.release());
        }
      }
      break;
  }
}

// The JSON of a random line; empty if that line has none.
std::string_view random_json(std::string_view input, Random& random) {
  std::vector<std::string_view> found;
  for (size_t at = input.find_first_of("[{"); at < input.size();
       at = input.find_first_of("[{", at)) {
    const size_t end = std::min(input.find('\n', at), input.size());
    found.push_back(input.substr(at, end - at));
    at = end;
  }
  return found.empty() ? std::string_view() : pick(found, random);
}

}  // namespace
}  // namespace fuzz

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t max_size,
                                          unsigned seed) {
  fuzz::Random random(seed);
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view text = fuzz::random_json(input, random);
  fuzz::JsonPtr tree = random() % 3 == 0 ? nullptr : pq::parse_json(text);
  if (!tree) return LLVMFuzzerMutate(data, size, max_size);
  for (auto times = random() % 3 + 1; times > 0; --times)
    fuzz::mutate(tree, random);
  const auto start = static_cast<size_t>(text.data() - input.data());
  const pq::TextPtr changed(cJSON_PrintUnformatted(tree.get()));
  std::string result(input.substr(0, start));
  result.append(changed.get()).append(input.substr(start + text.size()));
  if (result.size() > max_size) return LLVMFuzzerMutate(data, size, max_size);
  std::copy(result.begin(), result.end(), data);
  return result.size();
}
