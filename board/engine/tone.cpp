#include "engine/tone.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace board::engine {
namespace {

// Distance between curve points, in luma codes. The last interval is one code shorter, because the
// last point stands at 1023: so the points 0, 32, ..., 992, 1023 are exactly "no change".
constexpr int kPointDistance = 32;
constexpr double kMaxSlopeChange = 0.25;

double point_at(const WeightedCurve& curve, double luma) {
  const double code = luma * kLumaMax;
  const auto last_interval = curve.points.size() - 2;
  const auto k = std::min(static_cast<size_t>(code / kPointDistance), last_interval);
  const int start = static_cast<int>(k) * kPointDistance;
  const int end = std::min(start + kPointDistance, kLumaMax);
  return std::lerp(curve.points[k], curve.points[k + 1], (code - start) / (end - start)) / kLumaMax;
}

// A weight belongs to the middle of its 32nd; between two middles it changes evenly.
double weight_at(const WeightedCurve& curve, double luma) {
  const auto bins = static_cast<double>(curve.weights.size());
  const double position = std::clamp(luma * bins - 0.5, 0.0, bins - 1);
  const auto k = std::min(static_cast<size_t>(position), curve.weights.size() - 2);
  return std::lerp(curve.weights[k], curve.weights[k + 1], position - static_cast<double>(k));
}

}  // namespace

double apply_dci(const DciParameters& dci, double luma) {
  double weights = 0;
  double sum = 0;
  for (const WeightedCurve* curve : {&dci.low, &dci.mid, &dci.high}) {
    const double weight = weight_at(*curve, luma);
    weights += weight;
    sum += weight * point_at(*curve, luma);
  }
  return weights > 0 ? sum / weights : luma;
}

double apply_sharpness(const SharpParameters& sharp, double luma) {
  constexpr double kTurn = 2 * std::numbers::pi;
  const double slope_change = kMaxSlopeChange * sharp.peaking_gain / kPeakingGainMax;
  double change = slope_change * std::sin(kTurn * (luma - 0.5)) / kTurn;
  if (sharp.shoot_control)
    change *= static_cast<double>(change > 0 ? sharp.over : sharp.under) / kShootMax;
  return luma + change;
}

}  // namespace board::engine
