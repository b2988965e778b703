// Index keys: partial arrays, whose slots the JSON lists.

#include "base/saturate.h"
#include "j2s/report.h"
#include "j2s/tables.h"
#include "j2s/walk.h"

namespace j2s {
namespace {

bool overlaps(const Member& member, size_t begin, size_t end) {
  return member.offset < end && begin < member.offset + member.elem_size * member.elem_count;
}

// True if bytes begin..end-1 of the structure that holds the member are numbers only.
bool holds_numbers_only(const j2s_ctx& ctx, const Member& array, size_t begin, size_t end) {
  const int owner = find_owner(ctx, array.index);
  if (owner < 0) return false;
  for (const int index : MemberChain(ctx, owner)) {
    const Member member(ctx, index);
    if (!overlaps(member, begin, end)) continue;
    if (member.is_pointer() || member.is_struct() || is_length_member(ctx, index)) return false;
  }
  return true;
}

}  // namespace

cJSON* find_index(const Member& array, cJSON* parent) {
  const IndexKey key(array);
  // All of them: a second key of the same name would be taken for one of the elements.
  while (cJSON* index = cJSON_GetObjectItemCaseSensitive(parent, key.text())) {
    if (array.record->type == J2S_TYPE_STRING || array.flags == J2S_FLAG_ARRAY) return index;
    report_warning("_j2s_json_to_obj", "ignoring index for dep types %s", array.name());
    cJSON_Delete(cJSON_DetachItemViaPointer(parent, index));
  }
  return nullptr;
}

bool has_index(const Member& array, const cJSON* parent) {
  return cJSON_GetObjectItemCaseSensitive(parent, IndexKey(array).text()) != nullptr;
}

bool select_slot(const j2s_ctx& ctx, const Member& array, const cJSON* slot, Member& element) {
  const auto number = pq::saturate<int32_t>(cJSON_GetNumberValue(slot));
  if (number >= static_cast<int64_t>(array.elem_count)) return false;
  const auto stride = static_cast<int64_t>(array.elem_size);
  const int64_t offset = static_cast<int64_t>(array.offset) + stride * number;
  if (number < 0) {
    if (offset < 0 || !array.is_number()) return false;
    const auto begin = static_cast<size_t>(offset);
    if (!holds_numbers_only(ctx, array, begin, begin + array.elem_size)) return false;
  }
  element.offset = static_cast<size_t>(offset);
  return true;
}

}  // namespace j2s
