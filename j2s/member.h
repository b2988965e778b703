// A member as a conversion sees it while it descends: arrays lose a dimension, pointers a level.
// It is the walk's own copy. The tables themselves stay as they are, so that conversions may run
// side by side and may end anywhere.
#ifndef J2S_MEMBER_H_
#define J2S_MEMBER_H_

#include <cstring>

#include "j2s/j2s.h"

namespace j2s {

// Element counts of records have 16 bits; a longer dynamic array cannot be described.
inline constexpr int kMaxArrayLength = 0xffff;
constexpr bool is_possible_length(int length) {
  return length >= 0 && length <= kMaxArrayLength;
}

struct Member {
  explicit Member(const j2s_ctx& ctx, int obj_index)
      : record(&ctx.obj_table[obj_index]),
        index(obj_index),
        flags(record->flags),
        offset(record->offset),
        elem_size(record->elem_size),
        elem_count(record->elem_count),
        len_obj(record->len_obj) {}

  const j2s_obj* record;  // name, type, base_elem_size and links: the same on all levels
  int index;
  uint8_t flags;  // of this level, as the fields below
  size_t offset;
  size_t elem_size;
  size_t elem_count;
  int len_obj;

  [[nodiscard]] const char* name() const { return record->name; }
  [[nodiscard]] bool has(j2s_flag flag) const { return (flags & flag) != 0; }
  [[nodiscard]] bool is_char_array() const {
    return record->type == J2S_TYPE_STRING && flags == J2S_FLAG_ARRAY;
  }
  [[nodiscard]] bool is_char_pointer() const {
    return record->type == J2S_TYPE_STRING && flags == J2S_FLAG_POINTER;
  }
  [[nodiscard]] bool is_array() const {
    return has(J2S_FLAG_ARRAY) && !has(J2S_FLAG_POINTER_TO_ARRAY);
  }
  [[nodiscard]] bool is_pointer() const { return has(J2S_FLAG_POINTER); }
  [[nodiscard]] bool is_struct() const { return record->type == J2S_TYPE_STRUCT; }
  [[nodiscard]] bool is_number() const {
    return record->type >= J2S_TYPE_INT8 && record->type <= J2S_TYPE_DOUBLE;
  }
  // A single number that is a number in JSON too.
  [[nodiscard]] bool is_plain_number() const {
    return is_number() && !is_array() && !is_pointer() && record->enum_ref < 0;
  }
};

// The first element of an array; the next one lies array.elem_size further.
inline Member first_element(const Member& array) {
  const size_t base_size = array.record->base_elem_size;
  Member element = array;
  if (array.has(J2S_FLAG_ARRAY_OF_ARRAYS)) {
    element.flags &= static_cast<uint8_t>(~J2S_FLAG_ARRAY_OF_ARRAYS);
    element.elem_count = base_size == 0 ? 0 : array.elem_size / base_size;
  } else {
    element.flags &= static_cast<uint8_t>(~J2S_FLAG_ARRAY);
    element.elem_count = 1;
  }
  element.elem_size = base_size;
  return element;
}

// The array of `length` elements that a pointer member points at, relative to that address.
inline Member pointed_to_array(const Member& pointer, int length) {
  Member array = pointer;
  if (pointer.has(J2S_FLAG_POINTER_TO_POINTER)) {
    array.flags &= static_cast<uint8_t>(~J2S_FLAG_POINTER_TO_POINTER);
  } else {
    array.flags &= static_cast<uint8_t>(~(J2S_FLAG_POINTER | J2S_FLAG_POINTER_TO_ARRAY));
  }
  array.flags |= pointer.has(J2S_FLAG_ARRAY) ? J2S_FLAG_ARRAY_OF_ARRAYS : J2S_FLAG_ARRAY;
  array.offset = 0;
  array.elem_count = static_cast<size_t>(length);
  array.len_obj = -1;
  return array;
}

// Where a member lies, null in a null structure. Pointer members may lie unaligned, and strict
// aliasing holds for buffers of any origin: values are read and written through memcpy.
inline std::byte* address_of(std::byte* structure, const Member& member) {
  return structure == nullptr ? nullptr : structure + member.offset;
}
inline const std::byte* address_of(const std::byte* structure, const Member& member) {
  return structure == nullptr ? nullptr : structure + member.offset;
}

// The pointer stored in a pointer member; null in a null structure.
template <typename Target>
Target* read_pointer(const std::byte* structure, const Member& member) {
  Target* pointer = nullptr;
  if (structure != nullptr) std::memcpy(&pointer, structure + member.offset, sizeof pointer);
  return pointer;
}

}  // namespace j2s

#endif  // J2S_MEMBER_H_
