#include "j2s/dynamic_arrays.h"

#include <algorithm>

#include "base/saturate.h"
#include "j2s/tables.h"
#include "j2s/values.h"
#include "j2s/walk.h"

namespace j2s {
namespace {

constexpr char kFunction[] = "_j2s_json_to_obj";

bool is_dynamic_array(const j2s_ctx& ctx, const Member& member) {
  return member.is_pointer() && !member.is_char_pointer() &&
         find_obj(ctx, member.len_obj) != nullptr;
}

const cJSON* length_item(const j2s_ctx& ctx, const Member& pointer, const cJSON* json) {
  return cJSON_GetObjectItemCaseSensitive(json, ctx.obj_table[pointer.len_obj].name);
}

bool has_index_key(const Member& pointer, const cJSON* json) {
  const IndexKey key(pointer);
  return cJSON_GetObjectItemCaseSensitive(json, key.text()) != nullptr;
}

// The elements that the array has after its item was loaded; of an array of pointers, which share
// their length, those that the shortest one has.
int loaded_length(const j2s_ctx& ctx, const Member& member, const cJSON* json, int before) {
  const cJSON* item = cJSON_GetObjectItemCaseSensitive(json, member.name());
  if (item == nullptr) return before;
  if (const cJSON* length = length_item(ctx, member, json)) {
    return pq::saturate<int32_t>(cJSON_GetNumberValue(length));
  }
  if (has_index_key(member, json)) return before;
  if (!member.is_array()) return cJSON_GetArraySize(item);
  int shortest =
      static_cast<size_t>(cJSON_GetArraySize(item)) < member.elem_count ? before : kMaxArrayLength;
  for (const cJSON* element = item->child; element != nullptr; element = element->next) {
    shortest = std::min(shortest, cJSON_GetArraySize(element));
  }
  return shortest;
}

// The length that the array will be said to have.
int announced_length(const j2s_ctx& ctx, int struct_index, const Member& array, const cJSON* json,
                     int before) {
  if (const cJSON* length = length_item(ctx, array, json)) {
    return pq::saturate<int32_t>(cJSON_GetNumberValue(length));
  }
  int announced = before;  // of several arrays that share the length, the last one's counts
  for (const int index : MemberChain(ctx, struct_index)) {
    const Member member(ctx, index);
    if (!is_dynamic_array(ctx, member) || member.len_obj != array.len_obj) continue;
    announced = loaded_length(ctx, member, json, announced);
  }
  return announced;
}

// The length as it reads once it is stored: a 16-bit member makes 65535 of -1.
int as_stored(const j2s_ctx& ctx, const Member& array, std::byte* structure, int length) {
  const Member member(ctx, array.len_obj);
  const double before = read_number(structure, member);
  store_number(structure, member, length);
  const int stored = read_length(ctx, structure, array);
  store_number(structure, member, before);
  return stored;
}

int check_lengths(const j2s_ctx& ctx, int struct_index, const cJSON* json, std::byte* structure) {
  for (const int index : MemberChain(ctx, struct_index)) {
    const Member member(ctx, index);
    if (!is_dynamic_array(ctx, member)) continue;
    const int before = read_length(ctx, structure, member);
    const int announced = announced_length(ctx, struct_index, member, json, before);
    if (as_stored(ctx, member, structure, announced) > loaded_length(ctx, member, json, before)) {
      report_null_pointer(kFunction, member);
      return -1;
    }
  }
  return 0;
}

void store_lengths(const j2s_ctx& ctx, int struct_index, const cJSON* json, std::byte* structure) {
  for (const int index : MemberChain(ctx, struct_index)) {
    const Member member(ctx, index);
    const cJSON* item = cJSON_GetObjectItemCaseSensitive(json, member.name());
    if (item == nullptr) continue;
    if (is_length(ctx, member)) {
      store_number(structure, member, cJSON_GetNumberValue(item));
    } else if (is_dynamic_array(ctx, member) && length_item(ctx, member, json) == nullptr) {
      const int before = read_length(ctx, structure, member);
      const int length = announced_length(ctx, struct_index, member, json, before);
      if (length != before) store_number(structure, Member(ctx, member.len_obj), length);
    }
  }
}

// The elements that the array has after a load that ended at member `last`, which may have failed;
// -1: it went through all of them.
int elements_of(const j2s_ctx& ctx, int struct_index, const Member& array, const cJSON* json,
                const std::byte* structure, int last) {
  if (!array.is_array() && read_pointer<void>(structure, array) == nullptr) return 0;
  const int before = read_length(ctx, structure, array);
  for (const int index : MemberChain(ctx, struct_index)) {
    if (index == array.index) return std::max(0, loaded_length(ctx, array, json, before));
    if (index == last) break;
  }
  return before;  // not reached
}

// After a failure: each length says what the shortest of its arrays has.
void limit_lengths(const j2s_ctx& ctx, int struct_index, const cJSON* json, std::byte* structure,
                   int last) {
  for (const int length_index : MemberChain(ctx, struct_index)) {
    const Member length_member(ctx, length_index);
    if (!is_length(ctx, length_member)) continue;
    int shortest = kMaxArrayLength + 1;
    for (const int index : MemberChain(ctx, struct_index)) {
      const Member member(ctx, index);
      if (!is_dynamic_array(ctx, member) || member.len_obj != length_index) continue;
      shortest = std::min(shortest, elements_of(ctx, struct_index, member, json, structure, last));
    }
    if (shortest <= kMaxArrayLength) store_number(structure, length_member, shortest);
  }
}

void* allocate(j2s_ctx& ctx, size_t elem_size, int length) {
  // Neither factor reaches 2^32, so the product fits.
  return is_possible_length(length) ? j2s_alloc_data(&ctx, elem_size * static_cast<size_t>(length))
                                    : nullptr;
}

}  // namespace

bool is_length(const j2s_ctx& ctx, const Member& member) {
  return member.record->flags == 0 && is_length_member(ctx, member.index);
}

int wanted_length(const j2s_ctx& ctx, const Member& pointer, const cJSON* item, const cJSON* parent,
                  int current) {
  if (const cJSON* length = length_item(ctx, pointer, parent)) {
    return pq::saturate<int32_t>(cJSON_GetNumberValue(length));
  }
  report_warning(kFunction, "missing len in json for dynamic array '%s'", pointer.name());
  return has_index_key(pointer, parent) ? current : cJSON_GetArraySize(item);
}

void replace_buffer(j2s_ctx& ctx, const Member& pointer, std::byte* structure, bool had_buffer,
                    int length) {
  if (structure == nullptr) return;
  void* old_buffer = read_pointer<void>(structure, pointer);
  if (had_buffer && old_buffer != nullptr) j2s_release_data(&ctx, old_buffer);
  void* new_buffer = allocate(ctx, pointer.elem_size, length);
  std::memcpy(address_of(structure, pointer), &new_buffer, sizeof new_buffer);
}

int settle_lengths(const j2s_ctx& ctx, int struct_index, const cJSON* json, std::byte* structure,
                   int result, int last) {
  if (result >= 0) {
    last = -1;
    result = check_lengths(ctx, struct_index, json, structure);
  }
  if (result < 0) {
    limit_lengths(ctx, struct_index, json, structure, last);
  } else {
    store_lengths(ctx, struct_index, json, structure);
  }
  return result;
}

}  // namespace j2s
