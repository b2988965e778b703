#include "engine/colour_management.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

namespace board::engine {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kFullSaturation = 0.5;        // distance from grey that counts as saturation 1
constexpr double kDeltaUnit = 1.0 / 256;       // of luma and saturation, relative
constexpr double kHueDeltaUnit = kTurn / 512;  // of hue

// Where a colour stands in the tables, each in points from the table's first.
struct Position {
  double hue;
  double luma;
  double saturation;
};

double between(std::span<const int> points, double position) {
  const auto k = std::min(static_cast<size_t>(position), points.size() - 2);
  return std::lerp(points[k], points[k + 1], position - static_cast<double>(k));
}

// rows: one row for each hue point, `columns` values a row.
double between_rows(std::span<const int> rows, size_t columns, double hue, double column) {
  const auto row = std::min(static_cast<size_t>(hue), rows.size() / columns - 2);
  return std::lerp(between(rows.subspan(row * columns, columns), column),
                   between(rows.subspan((row + 1) * columns, columns), column),
                   hue - static_cast<double>(row));
}

double change_at(const HueAdjustment& adjustment, const Position& at) {
  return between(adjustment.delta, at.hue) *
         between_rows(adjustment.gain_by_luma, kLumaPoints, at.hue, at.luma) / kTableGainMax *
         between_rows(adjustment.gain_by_saturation, kSaturationPoints, at.hue, at.saturation) /
         kTableGainMax * adjustment.master_gain / kMasterGainMax;
}

}  // namespace

YCbCr apply_acm(const AcmParameters& acm, const YCbCr& colour) {
  const double chroma = std::hypot(colour.cb, colour.cr);
  double angle = std::atan2(colour.cr, colour.cb);
  if (angle < 0) angle += kTurn;
  const Position at = {angle / kTurn * (kHuePoints - 1),
                       std::clamp(colour.y, 0.0, 1.0) * (kLumaPoints - 1),
                       std::min(chroma / kFullSaturation, 1.0) * (kSaturationPoints - 1)};

  const double away_from_grey = std::min(at.saturation, 1.0);
  const double luma = colour.y * (1 + change_at(acm.luma, at) * away_from_grey * kDeltaUnit);
  const double moved = angle + change_at(acm.hue, at) * kHueDeltaUnit;
  const double scaled = chroma * (1 + change_at(acm.saturation, at) * kDeltaUnit);
  return {luma, scaled * std::cos(moved), scaled * std::sin(moved)};
}

}  // namespace board::engine
