// Declares structures in a form from which their type tables derive:
//
//   struct lamp {
//     J2S_STRUCT(lamp);
//     J2S_MEMBER(int8_t, lampEnable);          // 0: off, 1: on
//     J2S_MEMBER(uint16_t, lampCurve, 33);     // 0..1023
//   };
//
// One line a member, in JSON order: the line declares the member and describes it. The structure
// stays plain data (an aggregate, laid out as if the members were declared by hand). Members may
// be integers, floating-point numbers, strings (char* or char arrays), structures written in this
// way, and arrays of these.
//
// These are macros because a member's name is needed twice: as a name and as text.
#ifndef J2S_SCHEMA_H_
#define J2S_SCHEMA_H_

#include <cstddef>
#include <string_view>

namespace j2s {

// A source line as a type: the descriptions of a structure are told apart and put in order by the
// line they stand on. (A running counter would differ between the files that include a schema.)
template <int number>
struct Line {};

template <typename Type>
struct Described {
  std::string_view name;
  size_t offset;  // bytes from the start of the structure
};

}  // namespace j2s

#define J2S_STRUCT(struct_name)                                    \
  using J2sSelf = struct_name;                                     \
  static constexpr std::string_view kJ2sStructName = #struct_name; \
  static constexpr int kJ2sFirstLine = __LINE__

// J2S_MEMBER(TYPE, NAME) or, for an array, J2S_MEMBER(TYPE, NAME, COUNT).
#define J2S_MEMBER(type, member, ...)                                                     \
  static constexpr auto j2s_describe(j2s::Line<__LINE__>) {                               \
    return j2s::Described<decltype(J2sSelf::member)>{#member, offsetof(J2sSelf, member)}; \
  }                                                                                       \
  type member __VA_OPT__([__VA_ARGS__])

#endif  // J2S_SCHEMA_H_
