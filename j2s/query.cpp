// JSON to structure, query mode: the JSON says what is asked for and is rewritten with the
// structure's values.

#include "base/saturate.h"
#include "j2s/report.h"
#include "j2s/tables.h"
#include "j2s/values.h"
#include "j2s/walk.h"

namespace j2s {
namespace {

constexpr const char* kFunction = "_j2s_json_to_obj";

void query_string(const j2s_ctx& ctx, const Member& member, cJSON* item,
                  const std::byte* structure) {
  // By way of the other direction, which knows where a full char array ends.
  const JsonPtr text = member_to_json(ctx, member, structure, ArrayForm::kItems);
  if (text != nullptr) (void)cJSON_SetValuestring(item, text->valuestring);
}

int query_array(const j2s_ctx& ctx, const Member& array, cJSON* item, cJSON* parent,
                const std::byte* structure) {
  Member element = first_element(array);
  cJSON* child = item == nullptr ? nullptr : item->child;
  int result = 0;
  for (size_t i = 0; i < array.elem_count && child != nullptr && result >= 0; ++i) {
    cJSON* next = child->next;  // asked first: a query may replace its item
    result = query_member(ctx, element, child, parent, structure);
    element.offset += array.elem_size;
    child = next;
  }
  return result;
}

// Replaces the member's item by the listed slots, {} where there is none.
int query_indexed_array(const j2s_ctx& ctx, const Member& array, const cJSON* index, cJSON* parent,
                        const std::byte* structure) {
  if (index->child == nullptr) return 0;
  JsonPtr fresh(cJSON_CreateArray());
  if (!cJSON_ReplaceItemInObjectCaseSensitive(parent, array.name(), fresh.get())) return -1;
  cJSON* values = fresh.release();
  Member element = first_element(array);
  for (const cJSON* slot = index->child; slot != nullptr; slot = slot->next) {
    JsonPtr value;
    if (select_slot(ctx, array, slot, element))
      value = member_to_json(ctx, element, structure, ArrayForm::kItems);
    if (value == nullptr) value.reset(cJSON_CreateObject());
    if (!cJSON_AddItemToArray(values, value.get())) return -1;
    (void)value.release();
  }
  return 0;
}

// Puts the member's value under its name at the parent's end.
int append_member(const j2s_ctx& ctx, int obj_index, cJSON* parent, const std::byte* structure) {
  const Member member(ctx, obj_index);
  JsonPtr value = member_to_json(ctx, member, structure, ArrayForm::kItems);
  if (value == nullptr || !cJSON_AddItemToObject(parent, member.name(), value.get())) {
    report_error(kFunction, "failed to query %s", member.name());
    return -1;
  }
  (void)value.release();
  return 0;
}

int query_dynamic_array(const j2s_ctx& ctx, const Member& pointer, cJSON* item, cJSON* parent,
                        const std::byte* structure) {
  const j2s_obj* length_record = find_obj(ctx, pointer.len_obj);
  if (length_record == nullptr) {
    report_missing_length(kFunction, pointer);
    return -1;
  }
  const IndexKey key(pointer);
  if (cJSON_GetObjectItemCaseSensitive(parent, key.text()) != nullptr) {
    const int length = read_length(ctx, structure, pointer);
    if (length == 0) return 0;
    const auto* target = read_pointer<const std::byte>(structure, pointer);
    if (target == nullptr || !is_possible_length(length)) {
      report_null_pointer(kFunction, pointer);
      return -1;
    }
    return query_member(ctx, pointed_to_array(pointer, length), item, parent, target);
  }
  // An element of an array of pointers has no place of its own in the parent.
  if (cJSON_GetObjectItemCaseSensitive(parent, pointer.name()) != item) {
    report_error(kFunction, "failed to query %s", pointer.name());
    return -1;
  }
  cJSON_DeleteItemFromObjectCaseSensitive(parent, length_record->name);
  if (const int result = append_member(ctx, pointer.len_obj, parent, structure); result < 0) {
    return result;
  }
  cJSON_Delete(cJSON_DetachItemViaPointer(parent, item));
  return append_member(ctx, pointer.index, parent, structure);
}

int query_struct(const j2s_ctx& ctx, int struct_index, cJSON* json, const std::byte* structure) {
  int result = 0;
  for (const int index : MemberChain(ctx, struct_index)) {
    const Member member(ctx, index);
    // By name each time: a dynamic array's query moves its own item and the length's.
    cJSON* item = cJSON_GetObjectItemCaseSensitive(json, member.name());
    if (item == nullptr) continue;
    result = query_member(ctx, member, item, json, structure);
    if (result < 0) break;
  }
  return result;
}

void query_scalar(const j2s_ctx& ctx, const Member& member, cJSON* item,
                  const std::byte* structure) {
  const double value = read_number(structure, member);
  if (member.record->enum_ref >= 0) {
    const char* name = enum_name(ctx, member, pq::saturate<int32_t>(value));
    (void)cJSON_SetValuestring(item, name);
  } else {
    set_number(item, value);
  }
}

}  // namespace

int query_member(const j2s_ctx& ctx, const Member& member, cJSON* item, cJSON* parent,
                 const std::byte* structure) {
  if (member.is_char_array() || member.is_char_pointer()) {
    query_string(ctx, member, item, structure);
    return 0;
  }
  if (member.is_array()) {
    const cJSON* index = find_index(member, parent);
    return index == nullptr ? query_array(ctx, member, item, parent, structure)
                            : query_indexed_array(ctx, member, index, parent, structure);
  }
  if (member.is_pointer()) return query_dynamic_array(ctx, member, item, parent, structure);
  if (member.is_struct()) {
    const int struct_index = member.record->struct_ref;
    if (struct_index < 0) return -1;
    return query_struct(ctx, struct_index, item, address_of(structure, member));
  }
  query_scalar(ctx, member, item, structure);
  return 0;
}

}  // namespace j2s
