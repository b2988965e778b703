// The one conversion of JSON numbers to integers, for everybody who takes a number from outside.
#ifndef BASE_SATURATE_H_
#define BASE_SATURATE_H_

#include <limits>
#include <type_traits>

namespace pq {

// Truncates toward zero; what is out of range becomes the nearest limit, NaN becomes 0.
// A plain cast is undefined there, and differs between processors.
template <typename Integer>
requires std::is_integral_v<Integer>
constexpr Integer saturate(double value) {
  constexpr Integer kLowest = std::numeric_limits<Integer>::min();
  constexpr Integer kHighest = std::numeric_limits<Integer>::max();
  // One above kHighest, by way of its half: a power of two is exact where kHighest is not.
  constexpr Integer kHalf = kHighest / 2 + 1;
  constexpr double kBeyond = 2.0 * static_cast<double>(kHalf);
  if (value != value) return 0;
  if (value >= kBeyond) return kHighest;
  if (value <= static_cast<double>(kLowest)) return kLowest;
  return static_cast<Integer>(value);
}

}  // namespace pq

#endif  // BASE_SATURATE_H_
