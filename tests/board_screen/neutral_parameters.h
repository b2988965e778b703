// Parameters that switch every stage on and change nothing; tests turn one knob of them.
#ifndef TESTS_BOARD_SCREEN_NEUTRAL_PARAMETERS_H_
#define TESTS_BOARD_SCREEN_NEUTRAL_PARAMETERS_H_

#include <algorithm>

#include "engine/parameters.h"

inline board::engine::HueAdjustment neutral_adjustment() {
  board::engine::HueAdjustment adjustment;
  adjustment.gain_by_luma.fill(127);
  adjustment.gain_by_saturation.fill(127);
  adjustment.master_gain = 1023;
  return adjustment;
}

inline board::engine::WeightedCurve straight_curve(int weight) {
  board::engine::WeightedCurve curve;
  for (size_t k = 0; k < curve.points.size(); ++k) {
    curve.points[k] = std::min(32 * static_cast<int>(k), 1023);
  }
  curve.weights.fill(weight);
  return curve;
}

inline board::engine::Parameters neutral_parameters() {
  return {.dci = {true, straight_curve(3), straight_curve(5), straight_curve(7)},
          .acm = {true, neutral_adjustment(), neutral_adjustment(), neutral_adjustment()},
          .sharp = {.enable = true}};
}

#endif  // TESTS_BOARD_SCREEN_NEUTRAL_PARAMETERS_H_
