// The C types behind the number codes 1 to 10 of j2s_type, and how they lie in memory and get
// there.
#ifndef J2S_NUMBER_TYPES_H_
#define J2S_NUMBER_TYPES_H_

#include <cstddef>
#include <cstring>
#include <type_traits>

#include "base/saturate.h"
#include "j2s/j2s.h"

namespace j2s {

// Calls `use` with a value (a zero) of the type that the code stands for; not at all when it stands
// for no number.
template <typename Use>
void with_number_type(uint8_t type, Use use) {
  switch (type) {
    case J2S_TYPE_INT8:
      return use(int8_t{});
    case J2S_TYPE_UINT8:
      return use(uint8_t{});
    case J2S_TYPE_INT16:
      return use(int16_t{});
    case J2S_TYPE_UINT16:
      return use(uint16_t{});
    case J2S_TYPE_INT32:
      return use(int32_t{});
    case J2S_TYPE_UINT32:
      return use(uint32_t{});
    case J2S_TYPE_INT64:
      return use(int64_t{});
    case J2S_TYPE_UINT64:
      return use(uint64_t{});
    case J2S_TYPE_FLOAT:
      return use(float{});
    case J2S_TYPE_DOUBLE:
      return use(double{});
    default:
      return;
  }
}

// Members may lie unaligned.
template <typename Number>
Number read_as(const std::byte* address) {
  Number number = {};
  std::memcpy(&number, address, sizeof number);
  return number;
}

// As numbers are stored: see j2s_json_to_struct.
template <typename Number>
Number convert(double value) {
  if constexpr (std::is_floating_point_v<Number>) {
    return static_cast<Number>(value);
  } else if constexpr (sizeof(Number) < sizeof(int32_t)) {
    // The narrow types keep the low bits of 32: tools see 300 come back as 44.
    return static_cast<Number>(pq::saturate<int32_t>(value));
  } else {
    return pq::saturate<Number>(value);
  }
}

template <typename Number>
void store_as(std::byte* address, double value) {
  const auto number = convert<Number>(value);
  std::memcpy(address, &number, sizeof number);
}

}  // namespace j2s

#endif  // J2S_NUMBER_TYPES_H_
