#include "j2s/text_reader.h"

#include <algorithm>

#include "j2s/json_cursor.h"
#include "j2s/number_types.h"
#include "j2s/tables.h"
#include "j2s/values.h"

namespace j2s {
namespace {

bool read_value(const j2s_ctx& ctx, const Member& member, JsonCursor& cursor, std::byte* structure);

bool has_dynamic_arrays(const j2s_ctx& ctx) {
  return std::any_of(ctx.obj_table, ctx.obj_table + ctx.obj_count,
                     [](const j2s_obj& obj) { return obj.len_obj >= 0; });
}

// The members of a structure in an object's keys, each at most once and in the order of the tables.
class MembersInOrder {
 public:
  enum class Key { kMember, kUnknown, kElsewhere };

  MembersInOrder(const j2s_ctx& ctx, int struct_index)
      : ctx_(ctx), members_(ctx, struct_index), next_(members_.begin()) {}

  Key find(std::string_view key, int& index) {
    const auto found = search(next_, members_.end(), key);
    if (found != members_.end()) {
      index = *found;
      next_ = found;
      ++next_;
      return Key::kMember;
    }
    return search(members_.begin(), next_, key) != next_ ? Key::kElsewhere : Key::kUnknown;
  }

 private:
  [[nodiscard]] MemberChain::Iterator search(MemberChain::Iterator from, MemberChain::Iterator to,
                                             std::string_view key) const {
    while (from != to && key != ctx_.obj_table[*from].name)
      ++from;
    return from;
  }

  const j2s_ctx& ctx_;
  MemberChain members_;
  MemberChain::Iterator next_;
};

bool read_members(const j2s_ctx& ctx, int struct_index, JsonCursor& cursor, std::byte* structure) {
  if (struct_index < 0 || !cursor.open('{')) return false;
  MembersInOrder members(ctx, struct_index);
  std::string_view key;
  while (cursor.next_member(key)) {
    int index = -1;
    switch (members.find(key, index)) {
      case MembersInOrder::Key::kMember:
        if (!read_value(ctx, Member(ctx, index), cursor, structure)) return false;
        break;
      case MembersInOrder::Key::kUnknown:
        if (!cursor.skip()) return false;
        break;
      default:
        return false;
    }
  }
  return cursor.good();
}

template <typename Number>
bool read_numbers_as(JsonCursor& cursor, std::byte* address, size_t stride, size_t count) {
  const auto store = [&](double number) {
    if (address == nullptr || count == 0) return;
    store_as<Number>(address, number);
    address += stride;
    --count;
  };
  cursor.read_integers(store);
  while (cursor.next_element()) {
    double number = 0;
    if (!cursor.read_number(number)) return false;
    store(number);
    cursor.read_integers(store);
  }
  return cursor.good();
}

bool read_numbers(const Member& array, JsonCursor& cursor, std::byte* structure) {
  bool read = false;
  with_number_type(array.record->type, [&]<typename Number>(Number) {
    read = read_numbers_as<Number>(cursor, address_of(structure, array), array.elem_size,
                                   array.elem_count);
  });
  return read;
}

bool read_structs(const j2s_ctx& ctx, const Member& array, JsonCursor& cursor,
                  std::byte* structure) {
  Member element = first_element(array);
  for (size_t left = array.elem_count; cursor.next_element(); element.offset += array.elem_size) {
    const bool read = left == 0 ? cursor.skip() : read_value(ctx, element, cursor, structure);
    if (!read) return false;
    if (left > 0) --left;
  }
  return cursor.good();
}

bool read_array(const j2s_ctx& ctx, const Member& array, JsonCursor& cursor, std::byte* structure) {
  const Member element = first_element(array);
  if (element.is_array() || !cursor.open('[')) return false;
  if (element.is_plain_number()) return read_numbers(array, cursor, structure);
  return element.is_struct() && read_structs(ctx, array, cursor, structure);
}

bool read_value(const j2s_ctx& ctx, const Member& member, JsonCursor& cursor,
                std::byte* structure) {
  if (member.is_char_array() || member.is_char_pointer()) {
    std::string_view text;
    if (!cursor.read_string(text)) return false;
    store_text(structure, member, text);
    return true;
  }
  if (member.is_array()) return read_array(ctx, member, cursor, structure);
  if (member.is_pointer()) return false;
  if (member.is_struct()) {
    return read_members(ctx, member.record->struct_ref, cursor, address_of(structure, member));
  }
  double number = 0;
  if (!member.is_plain_number() || !cursor.read_number(number)) return false;
  store_number(structure, member, number);
  return true;
}

}  // namespace

bool read_struct_text(const j2s_ctx& ctx, int struct_index, const char* text,
                      std::byte* structure) {
  JsonCursor cursor(text);
  return !has_dynamic_arrays(ctx) && read_members(ctx, struct_index, cursor, structure);
}

bool read_member_text(const j2s_ctx& ctx, const Member& member, const char* text,
                      std::byte* structure) {
  JsonCursor cursor(text);
  return !has_dynamic_arrays(ctx) && read_value(ctx, member, cursor, structure);
}

}  // namespace j2s
