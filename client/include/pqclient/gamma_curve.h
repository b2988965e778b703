// Makes gamma curves and tables: from formulas, from control points, from files.
// No I/O here; any thread may call. Invalid text throws Error kInput that says where.
#ifndef PQCLIENT_GAMMA_CURVE_H_
#define PQCLIENT_GAMMA_CURVE_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "pqclient/cube_file.h"
#include "pqclient/json.h"

namespace pqclient {

inline constexpr int kGammaEntries = 1024;     // per table: one for each input code
inline constexpr int kGammaFullScale = 65535;  // the entry that stands for 1

// kGammaEntries values, evenly spaced from input 0 to input 1; 1 is full scale. Intermediate
// results may leave 0..1.
using GammaCurve = std::vector<double>;
// Red, green, blue.
using GammaCurves = std::array<GammaCurve, 3>;

// input ^ exponent: 1 is a straight line; above 1 the middle gets darker.
GammaCurve power_curve(double exponent);

// From sRGB's coded value to light (IEC 61966-2-1): straight at the dark end, then nearly a power
// of 2.2.
GammaCurve srgb_curve();

// input: 0..1, increasing from point to point.
struct ControlPoint {
  double input;
  double output;
};

// A smooth curve through all points that never leaves the range of the two points around it
// (Fritsch and Carlson's monotone cubic); constant before the first and after the last. Throws
// unless there are at least two points with increasing inputs.
GammaCurve curve_through(const std::vector<ControlPoint>& points);

// "0:0,0.5:0.2,1:1"
std::vector<ControlPoint> parse_control_points(std::string_view text);

// Rows of one value for all channels; of red, green and blue; or of an input followed by either.
// Values are separated by commas, semicolons or blanks; # starts a comment, a first row of words is
// a heading. Without an input column rows are evenly spaced. If inputs exceed 1 they are divided by
// the last one. Any number of rows other than a table's entries is taken as control points.
// full_scale: the value that stands for 1. By default 1 if no value is larger, otherwise 65535.
GammaCurves parse_gamma_csv(std::string_view text, std::optional<double> full_scale);

// The table's response to greys.
GammaCurves gamma_of_cube(const Cube& cube);

// The board's own curves. Throws kBadAnswer if a table is missing or has another length.
GammaCurves gamma_of_section(const cJSON& section_value);

struct GammaTables {
  std::array<std::vector<std::uint16_t>, 3> entries;
  int clipped = 0;  // entries that were below 0 or above full scale
  int raised = 0;   // entries that were lower than their predecessor
};

// Rounds and clips. keep_falling: entries lower than their predecessor are kept; otherwise they are
// raised to it.
GammaTables quantize(const GammaCurves& curves, bool keep_falling);

}  // namespace pqclient

#endif  // PQCLIENT_GAMMA_CURVE_H_
