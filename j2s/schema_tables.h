// Derives type tables from structures written as schema.h says, at compile time. This is the only
// place with templates that need thought; only the file that holds a schema's tables includes it.
#ifndef J2S_SCHEMA_TABLES_H_
#define J2S_SCHEMA_TABLES_H_

#include <array>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

#include "j2s/j2s.h"
#include "j2s/schema.h"

namespace j2s {

// A structure's members are looked for on this many lines after its J2S_STRUCT. One that is
// longer fails the test of completeness below.
inline constexpr int kMaxStructureLines = 160;

template <typename Type>
consteval uint8_t type_code() {
  if constexpr (std::is_same_v<Type, char> || std::is_same_v<Type, char*>) {
    return J2S_TYPE_STRING;
  } else if constexpr (std::is_class_v<Type>) {
    return J2S_TYPE_STRUCT;
  } else if constexpr (std::is_floating_point_v<Type>) {
    static_assert(sizeof(Type) == 4 || sizeof(Type) == 8);
    return sizeof(Type) == 4 ? J2S_TYPE_FLOAT : J2S_TYPE_DOUBLE;
  } else {
    static_assert(std::is_integral_v<Type>, "a schema has no way to describe this type");
    constexpr uint8_t kUnsigned = std::is_unsigned_v<Type> && !std::is_same_v<Type, bool>;
    switch (sizeof(Type)) {
      case 1:
        return J2S_TYPE_INT8 + kUnsigned;
      case 2:
        return J2S_TYPE_INT16 + kUnsigned;
      case 4:
        return J2S_TYPE_INT32 + kUnsigned;
      default:
        return J2S_TYPE_INT64 + kUnsigned;
    }
  }
}

template <typename Type>
consteval uint8_t flag_bits() {
  static_assert(std::rank_v<Type> <= 2, "two dimensions at most");
  uint8_t flags = 0;
  if (std::rank_v<Type> >= 1) flags |= J2S_FLAG_ARRAY;
  if (std::rank_v<Type> == 2) flags |= J2S_FLAG_ARRAY_OF_ARRAYS;
  if (std::is_pointer_v<std::remove_all_extents_t<Type>>) flags |= J2S_FLAG_POINTER;
  return flags;
}

constexpr void set_name(char (&field)[kJ2sNameSize], std::string_view name) {
  if (name.size() >= kJ2sNameSize) throw "a name of at most 63 characters";
  for (size_t i = 0; i < name.size(); ++i)
    field[i] = name[i];
}

// Position of a structure in the list, -1 when it is none of them.
template <typename Type, typename... Structures>
consteval int16_t struct_index() {
  int16_t index = 0;
  const bool found = ((std::is_same_v<Type, Structures> || (++index, false)) || ...);
  return found ? index : int16_t{-1};
}

template <typename Structure, int line>
concept HasMemberOnLine = requires {
  Structure::j2s_describe(Line<line>{});
};

using LineOffsets = std::make_integer_sequence<int, kMaxStructureLines>;

template <typename Structure, int... offsets>
consteval size_t member_count(std::integer_sequence<int, offsets...>) {
  return (size_t{HasMemberOnLine<Structure, Structure::kJ2sFirstLine + offsets>} + ...);
}

template <typename... Structures>
struct SchemaTables {
  std::array<j2s_obj, (member_count<Structures>(LineOffsets{}) + ...)> objs;
  std::array<j2s_struct, sizeof...(Structures)> structs;
};

// Fills the tables of SchemaTables<Structures...> one structure after the other.
template <typename... Structures>
class TableWriter {
 public:
  constexpr SchemaTables<Structures...> write() {
    (add_structure<Structures>(), ...);
    return tables_;
  }

 private:
  template <typename Structure>
  constexpr void add_structure() {
    static_assert(std::is_aggregate_v<Structure> && std::is_standard_layout_v<Structure> &&
                      std::is_trivially_copyable_v<Structure>,
                  "tables can describe plain data only");
    j2s_struct& record = tables_.structs[struct_count_++];
    set_name(record.name, Structure::kJ2sStructName);
    record.first_obj = static_cast<int16_t>(obj_count_);
    end_of_members_ = 0;
    add_members<Structure>(LineOffsets{});
    tables_.objs[obj_count_ - 1].next_obj = -1;
    if (round_up(end_of_members_, alignof(Structure)) != sizeof(Structure)) {
      throw "members without J2S_MEMBER at the structure's end, or too many lines";
    }
  }

  template <typename Structure, int... offsets>
  constexpr void add_members(std::integer_sequence<int, offsets...>) {
    (add_member_on_line<Structure, Structure::kJ2sFirstLine + offsets>(), ...);
  }

  template <typename Structure, int line>
  constexpr void add_member_on_line() {
    if constexpr (HasMemberOnLine<Structure, line>) {
      add_member(Structure::j2s_describe(Line<line>{}));
    }
  }

  template <typename Type>
  constexpr void add_member(Described<Type> member) {
    using Element = std::remove_extent_t<Type>;
    using Base = std::remove_all_extents_t<Type>;
    static_assert(std::extent_v<Type> <= std::numeric_limits<uint16_t>::max());
    static_assert(!std::is_class_v<Base> || struct_index<Base, Structures...>() >= 0,
                  "the member's structure is not in the list");
    if (member.offset != round_up(end_of_members_, alignof(Type))) {
      throw "a member without J2S_MEMBER, or not on a line of its own";
    }
    end_of_members_ = member.offset + sizeof(Type);

    j2s_obj& record = tables_.objs[obj_count_++];
    set_name(record.name, member.name);
    record.type = type_code<Base>();
    record.flags = flag_bits<Type>();
    record.offset = static_cast<uint32_t>(member.offset);
    record.elem_size = sizeof(Element);
    record.elem_count = std::is_array_v<Type> ? std::extent_v<Type> : 1;
    record.base_elem_size = sizeof(Base);
    record.next_obj = static_cast<int16_t>(obj_count_);
    record.struct_ref = struct_index<Base, Structures...>();
    record.enum_ref = -1;
    record.len_obj = -1;
  }

  static constexpr size_t round_up(size_t size, size_t alignment) {
    return (size + alignment - 1) / alignment * alignment;
  }

  SchemaTables<Structures...> tables_ = {};
  size_t obj_count_ = 0;
  size_t struct_count_ = 0;
  size_t end_of_members_ = 0;  // of the structure at hand, in bytes
};

// The tables of these structures, in this order; a structure comes after those it contains only
// by custom. Every structure has at least one member.
template <typename... Structures>
consteval SchemaTables<Structures...> make_tables() {
  return TableWriter<Structures...>().write();
}

}  // namespace j2s

#endif  // J2S_SCHEMA_TABLES_H_
