#include "qxaiq/json_patch.h"

#include <cjson/cJSON_Utils.h>

#include <cstddef>
#include <utility>

namespace pq {
namespace {

constexpr int kMostOperations = 1'000;
constexpr size_t kMostItems = 1'000'000;
constexpr int kMostDepth = 256;  // deeper trees overflow the stacks of those who walk them

// Statuses in the patch library's numbering, for what we find before it does.
constexpr int kNoPatch = 2;
constexpr int kNoSource = 4;
constexpr int kTooLarge = 8;
constexpr int kNoDocument = 13;

// Counts the items below and including `item`; false when there are too many or they nest too deep.
bool within_limits(const cJSON* item, int depth, size_t& items) {
  if (depth > kMostDepth) return false;
  for (; item != nullptr; item = item->next) {
    if (++items > kMostItems || !within_limits(item->child, depth + 1, items)) return false;
  }
  return true;
}

bool within_limits(const cJSON* document) {
  size_t items = 0;
  return within_limits(document, 0, items);
}

// Finds members as the library does, whatever the case of their names.
const char* text_member(const cJSON* operation, const char* name) {
  return cJSON_GetStringValue(cJSON_GetObjectItem(operation, name));
}

bool is(const char* name, std::string_view operation) {
  return name != nullptr && operation == name;
}

// Hands the library one operation, in an array of its own.
int apply_one(cJSON* document, JsonPtr operation) {
  const JsonPtr patch(cJSON_CreateArray());
  if (!patch || !cJSON_AddItemToArray(patch.get(), operation.get())) return kTooLarge;
  (void)operation.release();
  return cJSONUtils_ApplyPatches(document, patch.get());
}

int apply_operation(cJSON* document, JsonPtr operation) {
  const char* name = text_member(operation.get(), "op");
  if (is(name, "test")) {
    // To compare, the library sorts members in place and leaves lists that later operations would
    // break on; and a test should change nothing. It gets a copy to sort.
    const JsonPtr copy(cJSON_Duplicate(document, true));
    return copy ? apply_one(copy.get(), std::move(operation)) : kTooLarge;
  }
  // The library takes the source for a text without looking.
  const bool has_source = is(name, "move") || is(name, "copy");
  if (has_source && text_member(operation.get(), "from") == nullptr) return kNoSource;
  const int status = apply_one(document, std::move(operation));
  if (status != 0) return status;
  return within_limits(document) ? 0 : kTooLarge;
}

}  // namespace

int apply_patch(JsonPtr& document, std::string_view patch_text) {
  const JsonPtr patch = parse_json(patch_text);
  if (!cJSON_IsArray(patch.get())) return kNoPatch;
  if (!document) return kNoDocument;
  if (cJSON_GetArraySize(patch.get()) > kMostOperations) return kTooLarge;
  while (JsonPtr operation{cJSON_DetachItemFromArray(patch.get(), 0)}) {
    const int status = apply_operation(document.get(), std::move(operation));
    if (status != 0) return status;
  }
  return 0;
}

}  // namespace pq
