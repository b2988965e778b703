#include "json/patch.h"

#include <cjson/cJSON_Utils.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "base/quit.h"
#include "json/place.h"

namespace pq {
namespace {

constexpr int kMostOperations = 1'000;
constexpr size_t kMostItems = 1'000'000;
constexpr size_t kMostText = size_t{8} * 1024 * 1024;  // bytes of all texts and names together
constexpr int kMostDepth = 256;  // deeper trees overflow the stacks of those who walk them

// What all operations of a patch may cost together, in items looked at: about a second on a board.
// The document is locked meanwhile, and a few kilobytes of copies and tests could ask for minutes.
constexpr size_t kMostSteps = 64'000'000;
// The same once the process has been asked to end: the patches of many clients may wait in line.
constexpr size_t kMostStepsAtEnd = 4'000'000;
constexpr size_t kStepsToCopy = 16;  // an item
constexpr size_t kTextInAStep = 64;  // bytes

// Statuses in the patch library's numbering, for what we find before it does.
constexpr int kNotEqual = 1;
constexpr int kNoPatch = 2;
constexpr int kNoSource = 4;
constexpr int kNoSourceItem = 5;
constexpr int kNoValue = 7;
constexpr int kTooLarge = 8;
constexpr int kNoDocument = 13;
constexpr int kNoItem = 13;

struct Size {
  size_t items = 0;
  size_t text = 0;  // bytes
};

size_t length_of(const char* text) {
  return text != nullptr ? std::strlen(text) : 0;
}

// Without its children. A raw item says what is in it.
Size size_of(const cJSON* item) {
  if (!cJSON_IsRaw(item)) return {1, length_of(item->string) + length_of(item->valuestring)};
  return {static_cast<size_t>(item->valueint),
          length_of(item->string) + static_cast<size_t>(item->valuedouble)};
}

// Counts `item`, those behind it and all below them; false when they are too many, hold too much
// text or nest too deep.
bool count_items(const cJSON* item, int depth, Size& size) {
  if (depth >= kMostDepth) return false;
  for (; item != nullptr; item = item->next) {
    const Size own = size_of(item);
    size.text += own.text;
    size.items += own.items;
    if (size.items > kMostItems || size.text > kMostText) return false;
    if (item->child != nullptr && !count_items(item->child, depth + 1, size)) return false;
  }
  return true;
}

// What one look at the item, those behind it and all below them costs; none when they are too large
// a document.
std::optional<size_t> steps_to_look_at(const cJSON* item) {
  Size size;
  if (!count_items(item, 0, size)) return std::nullopt;
  return size.items + size.text / kTextInAStep;
}

// The steps that the operations of a patch may still take. What a call does not allow must not be
// done, or must not stay.
class Allowance {
 public:
  // An operation has changed the document.
  bool allows_document(const cJSON* document) {
    look_ = steps_to_look_at(document);
    return look_ && take(*look_);
  }

  // An operation looks for an item of the document, which may be the last one, and changes nothing.
  bool allows_search(const cJSON* document) {
    if (!look_) look_ = steps_to_look_at(document);
    return look_ && take(*look_);
  }

  // An item's children are copied.
  bool allows_copy(const cJSON* child) {
    const std::optional<size_t> look = steps_to_look_at(child);
    return look && take(*look * kStepsToCopy);
  }

 private:
  bool take(size_t steps) {
    if (quit_requested) left_ = std::min(left_, kMostStepsAtEnd);
    if (steps > left_) return false;
    left_ -= steps;
    return true;
  }

  size_t left_ = kMostSteps;
  std::optional<size_t> look_;  // at the whole document, when that is known
};

// Finds members as the library does, whatever the case of their names.
const char* text_member(const cJSON* operation, const char* name) {
  return cJSON_GetStringValue(cJSON_GetObjectItem(operation, name));
}

bool is(const char* name, std::string_view operation) {
  return name != nullptr && operation == name;
}

JsonPtr copy_of(const cJSON* item) {
  JsonPtr copy(cJSON_Duplicate(item, true));
  if (!copy) throw std::bad_alloc();
  return copy;
}

// Hands the library one operation, in an array of its own.
int apply_by_library(cJSON* document, JsonPtr operation) {
  const JsonPtr patch(cJSON_CreateArray());
  if (!patch) throw std::bad_alloc();
  if (!cJSON_AddItemToArray(patch.get(), operation.get())) return kNoPatch;
  (void)operation.release();
  const AllocationWatch memory;
  const int status = cJSONUtils_ApplyPatches(document, patch.get());
  if (status != 0) memory.throw_if_failed();
  return status;
}

// To compare, the library sorts members in place and leaves lists that later operations would break
// on; and a test should change nothing. It gets a copy to sort, of what is tested alone.
int test(cJSON* document, JsonPtr operation, Allowance& allowance) {
  const char* path = text_member(operation.get(), "path");
  if (path == nullptr) return kNoPatch;
  if (!allowance.allows_search(document)) return kTooLarge;
  const cJSON* tested = cJSONUtils_GetPointer(document, path);
  if (tested == nullptr) return kNotEqual;
  // Nothing to sort; and a text could be long to copy.
  if (tested->child == nullptr) return apply_by_library(document, std::move(operation));
  if (!allowance.allows_copy(tested->child)) return kTooLarge;
  JsonPtr root(cJSON_CreateString(""));
  if (!root) throw std::bad_alloc();
  // The member is there: only memory can be missing.
  if (!cJSON_ReplaceItemInObject(operation.get(), "path", root.get())) throw std::bad_alloc();
  (void)root.release();
  return apply_by_library(copy_of(tested).get(), std::move(operation));
}

int put_value(cJSON* document, const char* path, cJSON* operation) {
  JsonPtr value(cJSON_DetachItemFromObject(operation, "value"));
  if (!value) return kNoValue;
  return put_item(find_place(document, path), std::move(value));
}

// A member that is replaced moves to the end of its object.
int replace(cJSON* document, const char* path, cJSON* operation) {
  if (!take_item(find_place(document, path))) return kNoItem;
  return put_value(document, path, operation);
}

int copy(cJSON* document, const char* path, const char* from) {
  const cJSON* source = cJSONUtils_GetPointer(document, from);
  if (source == nullptr) return kNoSourceItem;
  JsonPtr item = copy_of(source);
  return put_item(find_place(document, path), std::move(item));
}

int move(cJSON* document, const char* path, const char* from) {
  JsonPtr item = take_item(find_place(document, from));
  if (!item) return kNoSourceItem;
  return put_item(find_place(document, path), std::move(item));
}

// The library does what it does well: removing, comparing, exchanging the whole document, and
// finding fault. What puts an item into the document is done here, see place.h.
int change(cJSON* document, JsonPtr operation) {
  const char* name = text_member(operation.get(), "op");
  const char* path = text_member(operation.get(), "path");
  if (path != nullptr && (is(name, "move") || is(name, "copy"))) {
    const char* from = text_member(operation.get(), "from");
    if (from == nullptr) return kNoSource;
    return is(name, "move") ? move(document, path, from) : copy(document, path, from);
  }
  const bool whole_document = path != nullptr && path[0] == '\0';
  if (path == nullptr || whole_document) return apply_by_library(document, std::move(operation));
  if (is(name, "add")) return put_value(document, path, operation.get());
  if (is(name, "replace")) return replace(document, path, operation.get());
  return apply_by_library(document, std::move(operation));
}

// Builds what the operation looks into.
void build_reached(cJSON* document, const cJSON* operation) {
  const char* name = text_member(operation, "op");
  const char* path = text_member(operation, "path");
  const char* from = text_member(operation, "from");
  if (path != nullptr) build_path(document, path);
  if (path != nullptr && is(name, "test")) build_item(document, path);
  if (from != nullptr && (is(name, "move") || is(name, "copy"))) build_item(document, from);
}

int apply_operation(cJSON* document, JsonPtr operation, Allowance& allowance) {
  build_reached(document, operation.get());
  const char* name = text_member(operation.get(), "op");
  if (is(name, "test")) return test(document, std::move(operation), allowance);
  const int status = change(document, std::move(operation));
  if (status != 0) return status;
  return allowance.allows_document(document) ? 0 : kTooLarge;
}

}  // namespace

int apply_patch(JsonPtr& document, JsonPtr patch) {
  if (!cJSON_IsArray(patch.get())) return kNoPatch;
  if (!document) return kNoDocument;
  if (cJSON_GetArraySize(patch.get()) > kMostOperations) return kTooLarge;
  Allowance allowance;
  while (JsonPtr operation{cJSON_DetachItemFromArray(patch.get(), 0)}) {
    const int status = apply_operation(document.get(), std::move(operation), allowance);
    if (status != 0) return status;
  }
  return 0;
}

}  // namespace pq
