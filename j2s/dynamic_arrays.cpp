#include "j2s/dynamic_arrays.h"

#include "j2s/values.h"

namespace j2s {
namespace {

void* allocate(j2s_ctx& ctx, size_t elem_size, int length) {
  // Neither factor reaches 2^32, so the product fits.
  return is_possible_length(length) ? j2s_alloc_data(&ctx, elem_size * static_cast<size_t>(length))
                                    : nullptr;
}

void replace_buffer(j2s_ctx& ctx, const Member& pointer, std::byte* structure, bool had_buffer,
                    int length) {
  void* old_buffer = read_pointer<void>(structure, pointer);
  if (had_buffer && old_buffer != nullptr) j2s_release_data(&ctx, old_buffer);
  void* new_buffer = allocate(ctx, pointer.elem_size, length);
  std::memcpy(address_of(structure, pointer), &new_buffer, sizeof new_buffer);
}

// A member may be an array (of arrays) of pointers that share their length.
void replace_buffers(j2s_ctx& ctx, const Member& member, std::byte* structure, bool had_buffer,
                     int length) {
  if (!member.is_array()) return replace_buffer(ctx, member, structure, had_buffer, length);
  Member element = first_element(member);
  for (size_t i = 0; i < member.elem_count; ++i, element.offset += member.elem_size) {
    replace_buffers(ctx, element, structure, had_buffer, length);
  }
}

}  // namespace

void resize_dynamic_arrays(j2s_ctx& ctx, int len_obj, std::byte* structure, int length) {
  if (structure == nullptr) return;
  const Member length_member(ctx, len_obj);
  const bool had_buffers = read_number(structure, length_member) != 0;
  for (int index = 0; index < ctx.obj_count; ++index) {
    const Member member(ctx, index);
    if (member.len_obj == len_obj && member.is_pointer()) {
      replace_buffers(ctx, member, structure, had_buffers, length);
    }
  }
  store_number(structure, length_member, length);
}

}  // namespace j2s
