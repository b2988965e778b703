// JSON to structure: loading, and the entry to both modes.

#include <cstring>

#include "base/saturate.h"
#include "j2s/dynamic_arrays.h"
#include "j2s/report.h"
#include "j2s/shallow_tree.h"
#include "j2s/tables.h"
#include "j2s/text_reader.h"
#include "j2s/values.h"
#include "j2s/walk.h"

namespace j2s {
namespace {

constexpr const char* kFunction = "_j2s_json_to_obj";

// Lists are walked along their links: cJSON counts from the first element for each n-th one.
cJSON* first_child(const cJSON* item) {
  return item == nullptr ? nullptr : item->child;
}

void load_string(const Member& member, const cJSON* item, std::byte* structure) {
  const char* text = cJSON_GetStringValue(item);
  store_text(structure, member, text == nullptr ? "" : text);
}

int load_array(j2s_ctx& ctx, const Member& array, cJSON* item, cJSON* parent,
               std::byte* structure) {
  Member element = first_element(array);
  cJSON* child = first_child(item);
  if (element.is_plain_number()) {
    store_numbers(structure, array, child);
    return 0;
  }
  int result = 0;
  for (size_t i = 0; i < array.elem_count && child != nullptr && result >= 0; ++i) {
    result = load_member(ctx, element, child, parent, structure);
    element.offset += array.elem_size;
    child = child->next;
  }
  return result;
}

// The n-th element of `item` goes to the slot that the n-th item of `index` names.
int load_indexed_array(j2s_ctx& ctx, const Member& array, const cJSON* index, cJSON* item,
                       cJSON* parent, std::byte* structure) {
  Member element = first_element(array);
  cJSON* child = first_child(item);
  int result = 0;
  for (const cJSON* slot = index->child; slot != nullptr && child != nullptr && result >= 0;
       slot = slot->next, child = child->next) {
    if (!select_slot(ctx, array, slot, element)) continue;
    result = load_member(ctx, element, child, parent, structure);
  }
  return result;
}

int load_dynamic_array(j2s_ctx& ctx, const Member& pointer, cJSON* item, cJSON* parent,
                       std::byte* structure) {
  if (find_obj(ctx, pointer.len_obj) == nullptr) {
    report_missing_length(kFunction, pointer);
    return -1;
  }
  const int current = read_length(ctx, structure, pointer);
  const int length = wanted_length(ctx, pointer, item, parent, current);
  if (length != current) replace_buffer(ctx, pointer, structure, current != 0, length);
  if (length == 0) return 0;
  auto* target = read_pointer<std::byte>(structure, pointer);
  if (target == nullptr || !is_possible_length(length)) {
    report_null_pointer(kFunction, pointer);
    return -1;
  }
  return load_member(ctx, pointed_to_array(pointer, length), item, parent, target);
}

// Finds an object's items by name, each name once. Objects usually hold their items in the order of
// the tables; then each is found behind the last one, without a search from the start.
class ItemFinder {
 public:
  explicit ItemFinder(cJSON* object) : object_(object) {}

  // As cJSON_GetObjectItemCaseSensitive: all items up to the last one have other names, those that
  // were asked for before, so one that is found behind it is the first of its name.
  cJSON* find(const char* name) {
    cJSON* next = last_ == nullptr ? first_child(object_) : last_->next;
    if (next == nullptr || next->string == nullptr || std::strcmp(next->string, name) != 0) {
      return cJSON_GetObjectItemCaseSensitive(object_, name);
    }
    return last_ = next;
  }

 private:
  cJSON* object_;
  cJSON* last_ = nullptr;
};

// Members of the structure that `json` holds, in the order of the tables.
int load_struct(j2s_ctx& ctx, int struct_index, cJSON* json, std::byte* structure) {
  int result = 0;
  int last = -1;
  bool has_lengths = false;
  ItemFinder items(json);
  for (const int index : MemberChain(ctx, struct_index)) {
    const Member member(ctx, index);
    cJSON* item = items.find(member.name());
    if (item == nullptr) continue;
    const bool counts = is_length(ctx, member);
    has_lengths = has_lengths || counts || member.is_pointer();
    if (counts) continue;
    last = index;
    result = load_member(ctx, member, item, json, structure);
    if (result < 0) break;
  }
  return has_lengths ? settle_lengths(ctx, struct_index, json, structure, result, last) : result;
}

int load_scalar(j2s_ctx& ctx, const Member& member, const cJSON* item, std::byte* structure) {
  double value = -1;  // of an enumeration member whose item is no name
  if (member.record->enum_ref < 0) {
    value = cJSON_GetNumberValue(item);
  } else if (const char* name = cJSON_GetStringValue(item); name != nullptr) {
    value = enum_value(ctx, member, name);
  }
  store_number(structure, member, value);
  return 0;
}

// A raw item stands for an array or a structure.
int load_raw(j2s_ctx& ctx, const Member& member, const cJSON* item, cJSON* parent,
             std::byte* structure) {
  const bool by_text = is_known_json(item) && !has_index(member, parent);
  if (by_text && read_member_text(ctx, member, item->valuestring, structure)) return 0;
  const pq::JsonPtr tree = parse_whole(item->valuestring);
  return load_member(ctx, member, tree.get(), parent, structure);
}

}  // namespace

int load_member(j2s_ctx& ctx, const Member& member, cJSON* item, cJSON* parent,
                std::byte* structure) {
  if (cJSON_IsRaw(item)) return load_raw(ctx, member, item, parent, structure);
  if (member.is_char_array() || member.is_char_pointer()) {
    load_string(member, item, structure);
    return 0;
  }
  if (member.is_array()) {
    const cJSON* index = find_index(member, parent);
    return index == nullptr ? load_array(ctx, member, item, parent, structure)
                            : load_indexed_array(ctx, member, index, item, parent, structure);
  }
  if (member.is_pointer()) return load_dynamic_array(ctx, member, item, parent, structure);
  if (member.is_struct()) {
    const int struct_index = member.record->struct_ref;
    if (struct_index < 0) return -1;
    return load_struct(ctx, struct_index, item, address_of(structure, member));
  }
  return load_scalar(ctx, member, item, structure);
}

}  // namespace j2s

int _j2s_json_to_obj(j2s_ctx* ctx, cJSON* item, cJSON* parent, int obj_index, void* ptr,
                     bool query) {
  if (j2s::find_obj(*ctx, obj_index) == nullptr) return -1;
  const j2s::Member member(*ctx, obj_index);
  auto* structure = static_cast<std::byte*>(ptr);
  if (query) return j2s::query_member(*ctx, member, item, parent, structure);
  // As the one item of a structure's load: a length is stored with its array, or after it.
  const bool counts = j2s::is_length(*ctx, member);
  const int result = counts ? 0 : j2s::load_member(*ctx, member, item, parent, structure);
  if (!counts && !member.is_pointer()) return result;
  return j2s::settle_lengths(*ctx, j2s::find_owner(*ctx, obj_index), parent, structure, result,
                             obj_index);
}

int j2s_json_to_struct(j2s_ctx* ctx, cJSON* json, const char* name, void* ptr) {
  const int struct_index = j2s::find_struct(*ctx, name);
  if (struct_index < 0) return -1;
  auto* structure = static_cast<std::byte*>(ptr);
  if (!cJSON_IsRaw(json)) return j2s::load_struct(*ctx, struct_index, json, structure);
  const bool by_text = j2s::is_known_json(json);
  if (by_text && j2s::read_struct_text(*ctx, struct_index, json->valuestring, structure)) return 0;
  const pq::JsonPtr tree = j2s::parse_whole(json->valuestring);
  return j2s::load_struct(*ctx, struct_index, tree.get(), structure);
}
