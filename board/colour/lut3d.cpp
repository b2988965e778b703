#include "colour/lut3d.h"

#include <bit>
#include <cstring>

namespace board {

static_assert(std::endian::native == std::endian::little, "the record is little-endian");
static_assert(sizeof(Lut3d::points) == sizeof(cubic_lut_data::values));

Rgb Lut3d::input(size_t red, size_t green, size_t blue) {
  constexpr double kLast = kEdge - 1;
  return {static_cast<double>(red) / kLast, static_cast<double>(green) / kLast,
          static_cast<double>(blue) / kLast};
}

Lut3d Lut3d::identity() {
  Lut3d lut;
  for (size_t blue = 0; blue < kEdge; ++blue) {
    for (size_t green = 0; green < kEdge; ++green) {
      for (size_t red = 0; red < kEdge; ++red) {
        lut.points[index(red, green, blue)] = to_full_scale(input(red, green, blue));
      }
    }
  }
  return lut;
}

cubic_lut_data to_record(const Lut3d& lut) {
  cubic_lut_data record{};
  record.size = Lut3d::kPoints;
  std::memcpy(record.values, lut.points.data(), sizeof(record.values));
  return record;
}

std::optional<Lut3d> from_record(const cubic_lut_data& record) {
  if (record.size != Lut3d::kPoints) return std::nullopt;
  Lut3d lut;
  std::memcpy(lut.points.data(), record.values, sizeof(record.values));
  return lut;
}

}  // namespace board
