#include "charts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace {

using plot::Axis;
using plot::Chart;
using plot::Colour;
using plot::Curve;
using plot::Grid;
using plot::Panel;
using pqclient::LinearColour;

struct TableLook {
  const char* member;
  const char* name;
  Colour colour;
};

constexpr std::array<Colour, 3> kChannels = {Colour::kRed, Colour::kGreen, Colour::kBlue};

std::vector<double> numbers_of(const cJSON& table) {
  std::vector<double> numbers;
  for (const cJSON* entry = table.child; entry != nullptr; entry = entry->next)
    numbers.push_back(entry->valuedouble);
  return numbers;
}

std::vector<double> numbers_of(const cJSON& section_value, const char* member) {
  const cJSON* table = pqclient::last_member(section_value, member);
  return table != nullptr ? numbers_of(*table) : std::vector<double>();
}

Curve curve_of(const std::vector<double>& numbers, const std::string& name, Colour colour) {
  Curve curve{.name = name, .colour = colour, .points = {}};
  for (std::size_t i = 0; i < numbers.size(); ++i)
    curve.points.push_back({static_cast<double>(i), numbers[i]});
  return curve;
}

template <std::size_t kCount>
std::vector<Curve> curves_of(const cJSON& section_value,
                             const std::array<TableLook, kCount>& looks) {
  std::vector<Curve> curves;
  for (const TableLook& look : looks) {
    const auto numbers = numbers_of(section_value, look.member);
    if (!numbers.empty()) curves.push_back(curve_of(numbers, look.name, look.colour));
  }
  return curves;
}

// Covers all values of the curves, and zero.
Axis axis_around(const std::string& label, const std::vector<Curve>& curves) {
  double low = 0;
  double high = 0;
  for (const Curve& curve : curves) {
    for (const plot::Point& point : curve.points) {
      low = std::min(low, point.y);
      high = std::max(high, point.y);
    }
  }
  return plot::round_axis(label, low, high);
}

Axis index_axis(const std::string& label, int count, int step) {
  Axis axis{label, 0, std::max(count - 1.0, 1.0), {}};
  for (int i = 0; i < count; i += step)
    axis.ticks.push_back(i);
  return axis;
}

// rows: of the table, one per hue; they become columns of the map.
Grid grid_of(const std::vector<double>& numbers, int steps) {
  const auto row_length = static_cast<std::size_t>(steps);
  const std::size_t hues = numbers.size() / row_length;
  Grid grid{.columns = static_cast<int>(hues), .rows = steps, .values = {}};
  if (hues == 0) return grid;  // the table is too short
  for (std::size_t step = 0; step < row_length; ++step) {
    for (std::size_t hue = 0; hue < hues; ++hue)
      grid.values.push_back(numbers[hue * row_length + step]);
  }
  const auto [low, high] = std::ranges::minmax(numbers);
  grid.low = std::min(low, 0.0);
  grid.high = std::max(high, grid.low + 1);
  return grid;
}

Panel gain_panel(const std::vector<double>& numbers, const std::string& title, int steps,
                 const std::string& step_name) {
  const auto hues = static_cast<int>(numbers.size()) / steps;
  return {title,
          index_axis("hue", hues, 16),
          index_axis(step_name, steps, 4),
          {},
          grid_of(numbers, steps)};
}

std::string three(double red, double green, double blue) {
  return plot::number_text(red) + ", " + plot::number_text(green) + ", " + plot::number_text(blue);
}

double gain_of(const cJSON& section_value, const char* member) {
  const cJSON* value = pqclient::last_member(section_value, member);
  return value != nullptr ? value->valuedouble : 0;
}

// The table's output as `input` goes from 0 to 1 in steps of 1/256.
template <typename Input>
Curve response(const pqclient::Cube& cube, std::size_t channel, const std::string& name,
               Input input) {
  constexpr int kSteps = 256;
  Curve curve{.name = name, .colour = kChannels.at(channel), .points = {}};
  for (int i = 0; i <= kSteps; ++i) {
    const double x = static_cast<double>(i) / kSteps;
    curve.points.push_back({x, cube.apply(input(x)).at(channel)});
  }
  return curve;
}

Axis unit_axis(const std::string& label) {
  return {label, 0, 1, {0, 0.25, 0.5, 0.75, 1}};
}

Panel response_panel(const std::string& title, std::vector<Curve> curves) {
  curves.push_back(plot::reference_line("unchanged", {0, 0}, {1, 1}));
  return {title, unit_axis("input"), unit_axis("output"), std::move(curves), {}};
}

// The distance by which colours of this much blue are moved, in thousandths of full scale.
Panel distance_panel(const pqclient::Cube& cube, double blue) {
  constexpr int kSteps = 33;
  Grid grid{.columns = kSteps, .rows = kSteps, .values = {}};
  for (int green = 0; green < kSteps; ++green) {
    for (int red = 0; red < kSteps; ++red) {
      const LinearColour input = {red / (kSteps - 1.0), green / (kSteps - 1.0), blue};
      const LinearColour output = cube.apply(input);
      grid.values.push_back(
          1000 * std::hypot(output[0] - input[0], output[1] - input[1], output[2] - input[2]));
    }
  }
  grid.high = std::max(std::round(std::ranges::max(grid.values)), 1.0);
  return {"moved by (1/1000), blue " + plot::number_text(blue),
          unit_axis("red"),
          unit_axis("green"),
          {},
          std::move(grid)};
}

}  // namespace

Chart gamma_chart(const cJSON& section_value, const std::string& title) {
  constexpr std::array<TableLook, 3> kTables = {{{"gammaTab_R", "red", Colour::kRed},
                                                 {"gammaTab_G", "green", Colour::kGreen},
                                                 {"gammaTab_B", "blue", Colour::kBlue}}};
  Panel panel{"",
              plot::code_axis("input code", 1023),
              plot::code_axis("output", 65535),
              curves_of(section_value, kTables),
              {}};
  panel.curves.push_back(plot::reference_line("straight", {0, 0}, {1023, 65535}));
  return {title, {std::move(panel)}, 1};
}

Chart dci_chart(const cJSON& section_value, const std::string& title) {
  constexpr std::array<TableLook, 3> kCurves = {{{"dciWgtCoef_low", "low", Colour::kCyan},
                                                 {"dciWgtCoef_mid", "mid", Colour::kOrange},
                                                 {"dciWgtCoef_high", "high", Colour::kMagenta}}};
  constexpr std::array<TableLook, 3> kWeights = {{{"dciWeight_low", "low", Colour::kCyan},
                                                  {"dciWeight_mid", "mid", Colour::kOrange},
                                                  {"dciWeight_high", "high", Colour::kMagenta}}};
  Panel curves{"curves", index_axis("point", 33, 8), {}, curves_of(section_value, kCurves), {}};
  curves.y = axis_around("dciWgtCoef", curves.curves);
  curves.curves.push_back(plot::reference_line("straight", {0, 0}, {32, 1023}));
  Panel weights{"weights",
                index_axis("part of the luma range", 32, 8),
                {},
                curves_of(section_value, kWeights),
                {}};
  weights.y = axis_around("dciWeight", weights.curves);
  return {title, {std::move(curves), std::move(weights)}, 1};
}

Chart acm_chart(const cJSON& section_value, const std::string& title) {
  constexpr std::array<TableLook, 3> kDeltas = {
      {{"acmTableDeltaYbyH", "luma", Colour::kMagenta},
       {"acmTableDeltaHbyH", "hue", Colour::kOrange},
       {"acmTableDeltaSbyH", "saturation", Colour::kCyan}}};
  struct Gains {
    const char* member;
    int steps;
    const char* of;
  };
  constexpr std::array<Gains, 6> kGains = {{{"acmTableGainYbyY", 9, "luma"},
                                            {"acmTableGainYbyS", 13, "saturation"},
                                            {"acmTableGainHbyY", 9, "luma"},
                                            {"acmTableGainHbyS", 13, "saturation"},
                                            {"acmTableGainSbyY", 9, "luma"},
                                            {"acmTableGainSbyS", 13, "saturation"}}};
  Panel deltas{
      "change by hue", index_axis("hue", 65, 8), {}, curves_of(section_value, kDeltas), {}};
  deltas.y = axis_around("delta", deltas.curves);
  deltas.curves.push_back(plot::reference_line("none", {0, 0}, {64, 0}));
  Chart chart{title + "; lumGain, hueGain, satGain: " +
                  three(gain_of(section_value, "lumGain"), gain_of(section_value, "hueGain"),
                        gain_of(section_value, "satGain")),
              {std::move(deltas)},
              2};
  for (const Gains& gains : kGains) {
    const auto numbers = numbers_of(section_value, gains.member);
    if (!numbers.empty()) {
      chart.panels.push_back(gain_panel(numbers, gains.member, gains.steps, gains.of));
    }
  }
  return chart;
}

Chart table_chart(const cJSON& table, const pqclient::Member& member, const std::string& title) {
  const auto numbers = numbers_of(table);
  // Two-dimensional: 65 hues by 9 or 13 steps.
  constexpr int kHues = 65;
  if (member.count > kHues && member.count % kHues == 0) {
    return {title, {gain_panel(numbers, "", member.count / kHues, "step")}, 1};
  }
  Panel panel{"",
              plot::round_axis("entry", 0, member.count - 1),
              {},
              {curve_of(numbers, std::string(member.name), Colour::kOrange)},
              {}};
  panel.y = axis_around("value", panel.curves);
  return {title, {std::move(panel)}, 1};
}

Chart lut_chart(const pqclient::Cube& cube, const std::string& title) {
  constexpr std::array<const char*, 3> kNames = {"red", "green", "blue"};
  std::vector<Curve> greys;
  std::vector<Curve> ramps;
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    greys.push_back(response(cube, i, kNames.at(i), [](double x) {
      return LinearColour{x, x, x};
    }));
    ramps.push_back(response(cube, i, kNames.at(i), [i](double x) {
      LinearColour colour{};
      colour.at(i) = x;
      return colour;
    }));
  }
  return {title,
          {response_panel("greys", std::move(greys)), response_panel("primaries", std::move(ramps)),
           distance_panel(cube, 0.25), distance_panel(cube, 0.75)},
          2};
}
