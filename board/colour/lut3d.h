// The 17x17x17 colour table that the engine computes, the store keeps and the screen shows.
//
// The store's record (cubic_lut_data) leaves its content to the board. This board's choice: `size`
// counts the lattice points (4,913), then for each point red, green and blue as little-endian
// unsigned 16-bit values with full scale 65535; red varies fastest, blue slowest, as in .cube
// files.
#ifndef BOARD_COLOUR_LUT3D_H_
#define BOARD_COLOUR_LUT3D_H_

#include <array>
#include <cstddef>
#include <optional>

#include "baseparameter_api.h"

#include "colour/rgb.h"

namespace board {

struct Lut3d {
  static constexpr size_t kEdge = 17;  // lattice points along each channel
  static constexpr size_t kPoints = kEdge * kEdge * kEdge;
  // Steps from a point to its neighbour along each channel.
  static constexpr size_t kRedStep = 1;
  static constexpr size_t kGreenStep = kEdge;
  static constexpr size_t kBlueStep = kEdge * kEdge;

  std::array<Rgb16, kPoints> points{};

  // Each index is 0..kEdge-1; index i stands for the input i/(kEdge-1).
  static constexpr size_t index(size_t red, size_t green, size_t blue) {
    return red * kRedStep + green * kGreenStep + blue * kBlueStep;
  }
  // The colour that stands at a lattice point before any change.
  static Rgb input(size_t red, size_t green, size_t blue);
  // The table that changes nothing.
  static Lut3d identity();
};

cubic_lut_data to_record(const Lut3d& lut);

// Nothing when the record holds no table of this size: a zeroed record is a store without a table.
std::optional<Lut3d> from_record(const cubic_lut_data& record);

}  // namespace board

#endif  // BOARD_COLOUR_LUT3D_H_
