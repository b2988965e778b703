#include "screen/lut_stage.h"

#include <algorithm>
#include <utility>

namespace board::screen {
namespace {

// A channel's place in its lattice cell.
struct Axis {
  size_t cell;     // index of the point below
  float fraction;  // from that point towards the next, 0..1
  size_t step;     // from a point to its neighbour along this channel
};

Axis locate(float channel, size_t step) {
  const float position = channel * static_cast<float>(Lut3d::kEdge - 1);
  const auto cell = std::min(static_cast<size_t>(position), Lut3d::kEdge - 2);
  return {cell, position - static_cast<float>(cell), step};
}

void order(Axis& first, Axis& second) {
  if (first.fraction < second.fraction) std::swap(first, second);
}

void add(RgbFloat& sum, const Rgb16& point, float share) {
  sum.red += static_cast<float>(point.red) * share;
  sum.green += static_cast<float>(point.green) * share;
  sum.blue += static_cast<float>(point.blue) * share;
}

}  // namespace

RgbFloat look_up(const Lut3d& lut, const RgbFloat& input) {
  Axis far = locate(input.red, Lut3d::kRedStep);
  Axis middle = locate(input.green, Lut3d::kGreenStep);
  Axis near = locate(input.blue, Lut3d::kBlueStep);
  size_t point = Lut3d::index(far.cell, middle.cell, near.cell);

  // From the lowest corner to the highest, along the channel with the largest fraction first.
  order(far, middle);
  order(middle, near);
  order(far, middle);
  constexpr float kUnit = 1.0F / kFullScale;
  RgbFloat sum;
  add(sum, lut.points[point], (1 - far.fraction) * kUnit);
  point += far.step;
  add(sum, lut.points[point], (far.fraction - middle.fraction) * kUnit);
  point += middle.step;
  add(sum, lut.points[point], (middle.fraction - near.fraction) * kUnit);
  point += near.step;
  add(sum, lut.points[point], near.fraction * kUnit);
  return sum;
}

}  // namespace board::screen
