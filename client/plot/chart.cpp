#include "plot/chart.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <span>

namespace plot {
namespace {

using Rgb = std::array<double, 3>;

constexpr std::array<Rgb, 3> kAboutZero = {
    {{0.13, 0.40, 0.67}, {0.97, 0.97, 0.97}, {0.70, 0.09, 0.17}}};
constexpr std::array<Rgb, 4> kFromZero = {
    {{0.27, 0.00, 0.33}, {0.19, 0.41, 0.56}, {0.21, 0.72, 0.47}, {0.99, 0.91, 0.14}}};

Rgb blend(std::span<const Rgb> stops, double position) {
  const double place = position * static_cast<double>(stops.size() - 1);
  const auto index = std::min(static_cast<std::size_t>(place), stops.size() - 2);
  const double part = place - static_cast<double>(index);
  Rgb colour{};
  for (std::size_t i = 0; i < colour.size(); ++i) {
    colour.at(i) = std::lerp(stops[index].at(i), stops[index + 1].at(i), part);
  }
  return colour;
}

// The smallest step of 1, 2 or 5 times a power of ten that covers `range` in at most eight steps.
double round_step(double range) {
  const double magnitude = std::pow(10.0, std::floor(std::log10(range / 8)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (range / (factor * magnitude) <= 8.0 + 1e-9) return factor * magnitude;
  }
  return 10 * magnitude;
}

}  // namespace

Axis code_axis(const std::string& label, int max) {
  Axis axis{label, 0, static_cast<double>(max), {}};
  const double codes = max % 2 == 0 ? max : max + 1;
  for (int quarter = 0; quarter < 4; ++quarter)
    axis.ticks.push_back(codes * quarter / 4);
  axis.ticks.push_back(max);
  return axis;
}

Axis round_axis(const std::string& label, double low, double high) {
  if (high - low < 1e-9) high = low + 1;
  const double step = round_step(high - low);
  Axis axis{label, std::floor(low / step) * step, std::ceil(high / step) * step, {}};
  const auto steps = static_cast<int>(std::lround((axis.high - axis.low) / step));
  for (int i = 0; i <= steps; ++i)
    axis.ticks.push_back(axis.low + i * step);
  return axis;
}

std::string number_text(double number) {
  std::array<char, 32> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.6g", number);
  return number == 0 ? "0" : std::string(text.data(), static_cast<std::size_t>(length));
}

Curve reference_line(const std::string& name, Point from, Point to) {
  return {.name = name, .colour = Colour::kGrey, .points = {from, to}, .is_reference = true};
}

double scale_position(const Grid& grid, double value) {
  if (grid.low >= 0) return std::clamp((value - grid.low) / (grid.high - grid.low), 0.0, 1.0);
  const double reach = std::max(-grid.low, grid.high);
  return std::clamp(0.5 + value / (2 * reach), 0.0, 1.0);
}

std::array<double, 3> scale_colour(const Grid& grid, double value) {
  const double position = scale_position(grid, value);
  return grid.low < 0 ? blend(kAboutZero, position) : blend(kFromZero, position);
}

}  // namespace plot
