#include "pqclient/gamma_curve.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "pqclient/error.h"
#include "pqclient/text_scanner.h"

namespace pqclient {
namespace {

constexpr std::array<const char*, 3> kTables = {"gammaTab_R", "gammaTab_G", "gammaTab_B"};

double input_of(std::size_t entry) {
  return static_cast<double>(entry) / (kGammaEntries - 1);
}

GammaCurve sampled(const auto& function) {
  GammaCurve curve(kGammaEntries);
  for (std::size_t i = 0; i < curve.size(); ++i)
    curve[i] = function(input_of(i));
  return curve;
}

// The slope at a point between two straight pieces: zero at a peak or dip, so that the curve does
// not overshoot; otherwise the weighted harmonic mean, which lies near the smaller slope.
double inner_slope(const ControlPoint& left, const ControlPoint& here, const ControlPoint& right) {
  const double before = here.input - left.input;
  const double after = right.input - here.input;
  const double rise_before = (here.output - left.output) / before;
  const double rise_after = (right.output - here.output) / after;
  if (rise_before * rise_after <= 0) return 0;
  const double weight = before + 2 * after;
  const double other_weight = 2 * before + after;
  return (weight + other_weight) / (weight / rise_before + other_weight / rise_after);
}

std::vector<double> slopes_at(const std::vector<ControlPoint>& points) {
  const std::size_t last = points.size() - 1;
  std::vector<double> slopes(points.size());
  const auto rise = [&](std::size_t i) {
    return (points[i + 1].output - points[i].output) / (points[i + 1].input - points[i].input);
  };
  slopes[0] = rise(0);
  slopes[last] = rise(last - 1);
  for (std::size_t i = 1; i < last; ++i)
    slopes[i] = inner_slope(points[i - 1], points[i], points[i + 1]);
  return slopes;
}

// Cubic Hermite interpolation between two points.
double cubic(const ControlPoint& from, double from_slope, const ControlPoint& to, double to_slope,
             double input) {
  const double width = to.input - from.input;
  const double t = (input - from.input) / width;
  const double u = 1 - t;
  return u * u * (1 + 2 * t) * from.output + t * t * (1 + 2 * u) * to.output +
         t * u * width * (u * from_slope - t * to_slope);
}

// ---- CSV ----

using Row = std::vector<double>;

constexpr std::string_view kSeparators = ",; \t";

std::string line_text(int line) {
  return "line " + std::to_string(line) + " of the table: ";
}

std::optional<Row> row_in(const std::vector<std::string_view>& words) {
  Row row;
  for (const std::string_view word : words) {
    const auto number = decimal_in(word);
    if (!number) return std::nullopt;
    row.push_back(*number);
  }
  return row;
}

std::vector<Row> rows_in(std::string_view text) {
  std::vector<Row> rows;
  bool may_be_heading = true;
  for (int line = 1; !text.empty(); ++line) {
    const auto words = words_of(take_line(text), kSeparators);
    if (words.empty()) continue;
    const auto row = row_in(words);
    if (!row && !may_be_heading) {
      throw Error(ErrorKind::kInput, line_text(line) + "only numbers are allowed here");
    }
    may_be_heading = false;
    if (!row) continue;
    if (row->size() > 4 || (!rows.empty() && row->size() != rows[0].size())) {
      throw Error(ErrorKind::kInput,
                  line_text(line) + "there should be " +
                      (rows.empty() ? std::string("1 to 4") : std::to_string(rows[0].size())) +
                      " numbers, not " + std::to_string(row->size()));
    }
    rows.push_back(*row);
  }
  if (rows.size() < 2) {
    throw Error(ErrorKind::kInput, "the table needs at least two rows of numbers");
  }
  return rows;
}

double largest_output(const std::vector<Row>& rows, std::size_t first) {
  double largest = 0;
  for (const Row& row : rows)
    largest =
        std::max(largest, *std::max_element(row.begin() + static_cast<long>(first), row.end()));
  return largest;
}

GammaCurve curve_of_points(const std::vector<ControlPoint>& points) {
  if (points.size() != kGammaEntries) return curve_through(points);
  // A whole table needs no interpolation if its inputs are the table's own.
  GammaCurve curve;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (std::abs(points[i].input - input_of(i)) > 1e-6) return curve_through(points);
    curve.push_back(points[i].output);
  }
  return curve;
}

void check_exponent(double exponent) {
  if (!(exponent >= 0.1 && exponent <= 10)) {
    throw Error(ErrorKind::kInput,
                "an exponent of " + std::to_string(exponent) + " is out of range: use 0.1 to 10");
  }
}

}  // namespace

GammaCurve power_curve(double exponent) {
  check_exponent(exponent);
  return sampled([exponent](double input) { return std::pow(input, exponent); });
}

GammaCurve srgb_curve() {
  return sampled([](double input) {
    return input <= 0.04045 ? input / 12.92 : std::pow((input + 0.055) / 1.055, 2.4);
  });
}

GammaCurve curve_through(const std::vector<ControlPoint>& points) {
  if (points.size() < 2) {
    throw Error(ErrorKind::kInput, "a curve needs at least two control points");
  }
  for (std::size_t i = 0; i < points.size(); ++i) {
    const bool rises = i == 0 || points[i].input > points[i - 1].input;
    if (!rises || points[i].input < 0 || points[i].input > 1) {
      throw Error(ErrorKind::kInput, "the inputs of control points must rise from 0 to 1; number " +
                                         std::to_string(i + 1) + " is " +
                                         std::to_string(points[i].input));
    }
  }
  const std::vector<double> slopes = slopes_at(points);
  return sampled([&](double input) {
    if (input <= points.front().input) return points.front().output;
    if (input >= points.back().input) return points.back().output;
    const auto right = std::ranges::upper_bound(points, input, {}, &ControlPoint::input);
    const auto i = static_cast<std::size_t>(right - points.begin());
    return cubic(points[i - 1], slopes[i - 1], points[i], slopes[i], input);
  });
}

std::vector<ControlPoint> parse_control_points(std::string_view text) {
  std::vector<ControlPoint> points;
  for (const std::string_view word : words_of(text, ", ")) {
    const std::size_t colon = word.find(':');
    const auto input = decimal_in(word.substr(0, colon));
    const auto output =
        colon == std::string_view::npos ? std::nullopt : decimal_in(word.substr(colon + 1));
    if (!input || !output) {
      throw Error(ErrorKind::kInput, "\"" + std::string(word) +
                                         "\" is not a control point: write INPUT:OUTPUT, both 0 "
                                         "to 1, for example 0:0,0.5:0.2,1:1");
    }
    points.push_back({*input, *output});
  }
  return points;
}

GammaCurves parse_gamma_csv(std::string_view text, std::optional<double> full_scale) {
  const std::vector<Row> rows = rows_in(text);
  const std::size_t columns = rows[0].size();
  const bool has_input = columns % 2 == 0;
  const std::size_t first = has_input ? 1 : 0;
  const double largest_input =
      has_input ? std::max(rows.back()[0], 1.0) : static_cast<double>(rows.size() - 1);
  const double scale =
      full_scale.value_or(largest_output(rows, first) <= 1 ? 1.0 : double{kGammaFullScale});
  GammaCurves curves;
  for (std::size_t channel = 0; channel < curves.size(); ++channel) {
    const std::size_t column = columns - first == 1 ? first : first + channel;
    std::vector<ControlPoint> points;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const double input = has_input ? rows[i][0] : static_cast<double>(i);
      points.push_back({input / largest_input, rows[i][column] / scale});
    }
    curves.at(channel) = curve_of_points(points);
  }
  return curves;
}

GammaCurves gamma_of_cube(const Cube& cube) {
  GammaCurves curves;
  for (std::size_t i = 0; i < kGammaEntries; ++i) {
    const double input = input_of(i);
    const LinearColour colour = cube.apply({input, input, input});
    for (std::size_t channel = 0; channel < curves.size(); ++channel)
      curves.at(channel).push_back(colour.at(channel));
  }
  return curves;
}

GammaCurves gamma_of_section(const cJSON& section_value) {
  GammaCurves curves;
  for (std::size_t channel = 0; channel < curves.size(); ++channel) {
    const cJSON* table = last_member(section_value, kTables.at(channel));
    if (table == nullptr || cJSON_GetArraySize(table) != kGammaEntries) {
      throw Error(ErrorKind::kBadAnswer, std::string("the answer has no table gamma/") +
                                             kTables.at(channel) + " of 1024 entries");
    }
    for (const cJSON* entry = table->child; entry != nullptr; entry = entry->next)
      curves.at(channel).push_back(entry->valuedouble / kGammaFullScale);
  }
  return curves;
}

GammaTables quantize(const GammaCurves& curves, bool keep_falling) {
  GammaTables tables;
  for (std::size_t channel = 0; channel < curves.size(); ++channel) {
    double floor = 0;
    for (const double value : curves.at(channel)) {
      const double kept = std::clamp(value, 0.0, 1.0);
      tables.clipped += std::abs(value - kept) * kGammaFullScale >= 0.5 ? 1 : 0;
      tables.raised += (floor - kept) * kGammaFullScale >= 0.5 && !keep_falling ? 1 : 0;
      floor = keep_falling ? kept : std::max(floor, kept);
      tables.entries.at(channel).push_back(
          static_cast<std::uint16_t>(std::lround(floor * kGammaFullScale)));
    }
  }
  return tables;
}

}  // namespace pqclient
