#include "json/patch.h"

#include <cjson/cJSON_Utils.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "json/limits.h"
#include "json/place.h"
#include "json/tree_size.h"

namespace pq {
namespace {

// Statuses in the patch library's numbering.
constexpr int kNoArray = 1;
constexpr int kNotEqual = 1;
constexpr int kNoDocument = 1;
constexpr int kNoPath = 2;
constexpr int kUnknownOperation = 3;
constexpr int kNoSource = 4;
constexpr int kNoSourceItem = 5;
constexpr int kNoValue = 7;
constexpr int kNoPlace = 9;
constexpr int kNoItem = 13;

// Costs in nanoseconds, as measured (tests/json/patch_test.cpp holds the sum to a time). An item is
// a few small pieces of memory, so copying and deleting cost far more than passing by.
namespace cost {
constexpr size_t kMax = 100'000'000;
constexpr size_t kOperation = 2'000;
constexpr size_t kStep = 25;  // of a search: in a long list each is a miss of the caches
constexpr size_t kItemMeasured = 12;
constexpr size_t kTextMeasured = 1;  // a byte
constexpr size_t kItemCopied = 200;
constexpr size_t kTextCopied = 1;
constexpr size_t kItemDeleted = 80;
// Both sides of a test are sorted by name, which compares a name seventeen times and more.
constexpr size_t kItemTested = kItemCopied + kItemDeleted + 300;
constexpr size_t kTextTested = 40;
}  // namespace cost

// Finds members as the library does, in any case.
const char* text_member(const cJSON* operation, const char* name) {
  return cJSON_GetStringValue(cJSON_GetObjectItem(operation, name));
}

JsonPtr copy_of(const cJSON* item) {
  JsonPtr copy(cJSON_Duplicate(item, true));
  if (!copy) throw std::bad_alloc();
  return copy;
}

// The extent of a tree, the same for equal trees: items, and characters of texts and names.
class Extent {
 public:
  // Counts `item` and all below it, until there is more than in `most`.
  explicit Extent(const cJSON* item, const Extent* most = nullptr) : most_(most) { add(item); }

  bool operator==(const Extent& other) const {
    return items_ == other.items_ && text_ == other.text_;
  }
  [[nodiscard]] size_t items() const { return items_; }
  [[nodiscard]] size_t text() const { return text_; }

 private:
  bool add(const cJSON* item) {
    ++items_;
    if (item->valuestring != nullptr) text_ += std::string_view(item->valuestring).size();
    if (most_ != nullptr && (items_ > most_->items_ || text_ > most_->text_)) return false;
    for (const cJSON* child = item->child; child != nullptr; child = child->next) {
      if (cJSON_IsObject(item)) text_ += std::string_view(child->string).size();
      if (!add(child)) return false;
    }
    return true;
  }

  const Extent* most_;
  size_t items_ = 0;
  size_t text_ = 0;
};

// The library's comparison. It sorts the members of both in place.
bool are_equal(cJSON* item, JsonPtr value) {
  const JsonPtr patch(cJSON_CreateArray());
  JsonPtr operation(cJSON_CreateObject());
  if (!patch || !operation) throw std::bad_alloc();
  if (cJSON_AddStringToObject(operation.get(), "op", "test") == nullptr ||
      cJSON_AddStringToObject(operation.get(), "path", "") == nullptr) {
    throw std::bad_alloc();
  }
  add_to_object(operation.get(), "value", std::move(value));
  if (cJSON_AddItemToArray(patch.get(), operation.get())) (void)operation.release();
  return cJSONUtils_ApplyPatches(item, patch.get()) == 0;
}

// A document while a patch changes it. Its size is known at any time, so that an operation that
// makes too much of it is refused before it has taken the memory.
class Patcher {
 public:
  Patcher(cJSON* document, TreeSize size) : document_(document), size_(size) {}

  // Returns 0 or the status.
  int apply(cJSON* operation) {
    const char* path = text_member(operation, "path");
    if (path == nullptr) return kNoPath;
    const char* name = text_member(operation, "op");
    if (name == nullptr) return kUnknownOperation;
    for (const Operation& known : kOperations) {
      if (known.name != name) continue;
      const int status = (this->*known.apply)(operation, path);
      if (status != 0) return status;
      return take(cost::kOperation) ? 0 : kPatchTooLarge;
    }
    return kUnknownOperation;
  }

 private:
  struct Operation {
    std::string_view name;
    int (Patcher::*apply)(cJSON* operation, const char* path);
  };
  static const std::array<Operation, 6> kOperations;

  // Charges this cost and the searches up to now; false if the patch must stop.
  [[nodiscard]] bool take(size_t nanoseconds) {
    nanoseconds += (search_.steps() - paid_steps_) * cost::kStep;
    paid_steps_ = search_.steps();
    if (nanoseconds > left_) return false;
    left_ -= nanoseconds;
    return true;
  }

  [[nodiscard]] bool take_measuring(TreeSize size) {
    return take(size.items * cost::kItemMeasured + size.text * cost::kTextMeasured);
  }

  int test(cJSON* operation, const char* path);
  int add(cJSON* operation, const char* path);
  int replace(cJSON* operation, const char* path);
  int remove(cJSON* operation, const char* path);
  int move(cJSON* operation, const char* path);
  int copy(cJSON* operation, const char* path);

  // Count an item that comes or goes, and what it costs to measure it. False: the patch has failed.
  [[nodiscard]] bool take_growth(const JsonPlace& place, const cJSON* item);
  [[nodiscard]] bool take_shrinking(const JsonPlace& place, const cJSON* item);

  int delete_item(const JsonPlace& place, cJSON* item);
  int put(const JsonPlace& place, JsonPtr item);
  int put_value(const char* path, cJSON* operation);
  int replace_document(JsonPtr value);

  cJSON* document_;
  TreeSize size_;
  JsonSearch search_{size_};
  size_t paid_steps_ = 0;
  size_t left_ = cost::kMax;
};

const std::array<Patcher::Operation, 6> Patcher::kOperations = {{{"test", &Patcher::test},
                                                                 {"add", &Patcher::add},
                                                                 {"replace", &Patcher::replace},
                                                                 {"remove", &Patcher::remove},
                                                                 {"move", &Patcher::move},
                                                                 {"copy", &Patcher::copy}}};

// A test should change nothing, and later operations would break on the lists that a comparison
// leaves. So a copy is compared; and only of an item that may equal the value, so that tests cost
// no more than the request that asks for them.
int Patcher::test(cJSON* operation, const char* path) {
  size_t depth = 0;
  cJSON* tested = search_.find(document_, path, depth);
  search_.build(tested, depth);
  JsonPtr value(cJSON_DetachItemFromObject(operation, "value"));
  if (tested == nullptr || !value) return kNotEqual;
  const Extent wanted(value.get());
  if (!(Extent(tested, &wanted) == wanted)) return kNotEqual;
  if (tested->child == nullptr) return are_equal(tested, std::move(value)) ? 0 : kNotEqual;
  if (!take(wanted.items() * cost::kItemTested + wanted.text() * cost::kTextTested)) {
    return kPatchTooLarge;
  }
  return are_equal(copy_of(tested).get(), std::move(value)) ? 0 : kNotEqual;
}

int Patcher::add(cJSON* operation, const char* path) {
  return put_value(path, operation);
}

// A member that is replaced moves to the end of its object, an element stays where it was.
int Patcher::replace(cJSON* operation, const char* path) {
  if (path[0] == '\0') return put_value(path, operation);
  const JsonPlace place = find_place(document_, path, search_);
  cJSON* old = item_at(place, search_);
  if (old == nullptr) return kNoItem;
  cJSON* next = old->next;
  if (const int status = delete_item(place, old); status != 0) return status;
  JsonPtr value(cJSON_DetachItemFromObject(operation, "value"));
  if (!value) return kNoValue;
  if (!cJSON_IsArray(place.parent)) return put(place, std::move(value));
  if (!take_growth(place, value.get())) return kPatchTooLarge;
  put_before(place.parent, next, std::move(value));
  return 0;
}

int Patcher::remove(cJSON* /*operation*/, const char* path) {
  if (path[0] == '\0') {
    JsonPtr nothing(cJSON_CreateNull());
    if (!nothing) throw std::bad_alloc();
    nothing->type = cJSON_Invalid;  // prints as nothing
    return replace_document(std::move(nothing));
  }
  const JsonPlace place = find_place(document_, path, search_);
  cJSON* item = item_at(place, search_);
  return item != nullptr ? delete_item(place, item) : kNoItem;
}

int Patcher::move(cJSON* operation, const char* path) {
  const char* from = text_member(operation, "from");
  if (from == nullptr) return kNoSource;
  const JsonPlace source = find_place(document_, from, search_);
  cJSON* found = item_at(source, search_);
  if (found == nullptr) return kNoSourceItem;
  search_.build(found, source.depth);  // tabs tell where it was printed
  if (!take_shrinking(source, found)) return kPatchTooLarge;
  JsonPtr item(cJSON_DetachItemViaPointer(source.parent, found));
  return put(find_place(document_, path, search_), std::move(item));
}

int Patcher::copy(cJSON* operation, const char* path) {
  const char* from = text_member(operation, "from");
  if (from == nullptr) return kNoSource;
  size_t depth = 0;
  cJSON* source = search_.find(document_, from, depth);
  if (source == nullptr) return kNoSourceItem;
  search_.build(source, depth);  // tabs tell where it was printed
  const JsonPlace place = find_place(document_, path, search_);
  if (place.leads_nowhere()) return kNoPlace;
  const std::optional<TreeSize> size = measure(source, place.depth);
  if (!size) return kPatchTooLarge;
  TreeSize grown = size_;
  grown += *size;  // here already: the copy takes its memory before what it replaces is deleted
  if (!fits(grown) || !take_measuring(*size) ||
      !take(size->items * cost::kItemCopied + size->text * cost::kTextCopied)) {
    return kPatchTooLarge;
  }
  return put(place, copy_of(source));
}

int Patcher::put_value(const char* path, cJSON* operation) {
  JsonPtr value(cJSON_DetachItemFromObject(operation, "value"));
  if (!value) return kNoValue;
  if (path[0] == '\0') return replace_document(std::move(value));
  return put(find_place(document_, path, search_), std::move(value));
}

int Patcher::replace_document(JsonPtr value) {
  if (document_ == nullptr) return kNoDocument;
  const std::optional<TreeSize> size = measure(value.get(), 0);
  if (!size) return kPatchTooLarge;
  const bool paid = take_measuring(*size) && take(size_.items * cost::kItemDeleted);
  std::swap(*document_, *value);
  std::swap(document_->string, value->string);  // the document keeps its name, or lack of one
  size_ = *size;
  return paid ? 0 : kPatchTooLarge;
}

int Patcher::put(const JsonPlace& place, JsonPtr item) {
  if (place.leads_nowhere()) return kNoPlace;
  if (cJSON_IsObject(place.parent)) {
    cJSON* old = item_at(place, search_);
    const int status = old != nullptr ? delete_item(place, old) : 0;
    if (status != 0) return status;
  }
  if (!take_growth(place, item.get())) return kPatchTooLarge;
  return put_item(place, std::move(item), search_);
}

int Patcher::delete_item(const JsonPlace& place, cJSON* item) {
  const size_t before = size_.items;
  if (!take_shrinking(place, item)) return kPatchTooLarge;
  cJSON_Delete(cJSON_DetachItemViaPointer(place.parent, item));
  return take((before - size_.items) * cost::kItemDeleted) ? 0 : kPatchTooLarge;
}

bool Patcher::take_growth(const JsonPlace& place, const cJSON* item) {
  std::optional<TreeSize> size = measure(item, place.depth);
  if (!size) return false;
  size->text += frame_size(place.parent, place.name, place.depth);
  size_ += *size;
  return fits(size_) && take_measuring(*size);
}

bool Patcher::take_shrinking(const JsonPlace& place, const cJSON* item) {
  // A part of a document that fits is never too large.
  TreeSize size = measure(item, place.depth).value_or(TreeSize{});
  if (!take_measuring(size)) return false;
  size.text += frame_size(place.parent, item->string == nullptr ? "" : item->string, place.depth);
  size_ -= size;
  return true;
}

}  // namespace

int apply_patch(cJSON* document, JsonPtr patch, const std::atomic<bool>& stop) {
  if (!cJSON_IsArray(patch.get())) return kNoArray;
  if (cJSON_GetArraySize(patch.get()) > kMaxOperations) return kPatchTooLarge;
  std::optional<TreeSize> size = TreeSize{};
  if (document != nullptr) size = measure(document, 0);
  if (!size) return kPatchTooLarge;
  Patcher patcher(document, *size);
  while (const JsonPtr operation{cJSON_DetachItemFromArray(patch.get(), 0)}) {
    if (stop) return kPatchStopped;
    const int status = patcher.apply(operation.get());
    if (status != 0) return status;
  }
  return document != nullptr ? 0 : kNoDocument;
}

}  // namespace pq
