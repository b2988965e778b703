// Making gamma tables: curves as formulas, from control points, from files.
// No I/O here; any thread may call. Text that makes no sense throws Error kInput that says where.
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

inline constexpr int kGammaEntries = 1024;     // of a table: one for each code that comes in
inline constexpr int kGammaFullScale = 65535;  // what its entries have in place of 1

// kGammaEntries values at equal distances from input 0 to input 1; 1 is full scale. May leave 0..1
// on the way to a table.
using GammaCurve = std::vector<double>;
// Red, green, blue.
using GammaCurves = std::array<GammaCurve, 3>;

// input ^ exponent: 1 is a straight line, above 1 the middle gets darker.
GammaCurve power_curve(double exponent);

// From sRGB's coded value to light (IEC 61966-2-1): a straight piece at the dark end, then nearly a
// power of 2.2.
GammaCurve srgb_curve();

// input 0..1, rising from point to point.
struct ControlPoint {
  double input;
  double output;
};

// Through all points, smooth, and nowhere higher or lower than the two points around (Fritsch and
// Carlson's monotone cubic); level before the first and behind the last. Throws unless there are
// two points with rising inputs.
GammaCurve curve_through(const std::vector<ControlPoint>& points);

// "0:0,0.5:0.2,1:1"
std::vector<ControlPoint> parse_control_points(std::string_view text);

// Rows of one value for all channels; of red, green and blue; or with the input in front of either.
// Separated by commas, semicolons or blanks; # starts a comment, a first row of words is a heading.
// Rows without input stand at equal distances. Fewer or more rows than a table has entries are
// control points. An input above 1 counts in parts of the last one.
// full_scale: the value that stands for 1. By default 1 when no value is larger, else 65535.
GammaCurves parse_gamma_csv(std::string_view text, std::optional<double> full_scale);

// What the table does to greys.
GammaCurves gamma_of_cube(const Cube& cube);

// As the board has them. Throws kBadAnswer when a table is missing or has another length.
GammaCurves gamma_of_section(const cJSON& section_value);

struct GammaTables {
  std::array<std::vector<std::uint16_t>, 3> entries;
  int clipped = 0;  // entries that were below 0 or above full scale
  int raised = 0;   // entries that were lower than the one before
};

// Rounded and clipped. keep_falling: entries that are lower than the one before stay so; else they
// are raised to it.
GammaTables quantize(const GammaCurves& curves, bool keep_falling);

}  // namespace pqclient

#endif  // PQCLIENT_GAMMA_CURVE_H_
