// A chart as data, without saying how it is drawn: drawing.h makes a file of it, terminal.h text.
#ifndef PLOT_CHART_H_
#define PLOT_CHART_H_

#include <array>
#include <string>
#include <vector>

namespace plot {

enum class Colour { kRed, kGreen, kBlue, kOrange, kCyan, kMagenta, kGrey };

struct Point {
  double x = 0;
  double y = 0;
};

// In the unit that `label` names; low < high. Every tick lies between the two.
struct Axis {
  std::string label;
  double low = 0;
  double high = 1;
  std::vector<double> ticks;
};

struct Curve {
  std::string name;
  Colour colour = Colour::kGrey;
  std::vector<Point> points;  // by increasing x
  bool is_reference = false;  // for comparison: drawn faintly, below the others
};

// A two-dimensional table, drawn as a colour map.
struct Grid {
  int columns = 0;  // along x
  int rows = 0;     // along y, the first one at the bottom
  std::vector<double> values;
  double low = 0;  // values at the ends of the colour scale; if low < 0, zero is the middle
  double high = 1;

  [[nodiscard]] double at(int column, int row) const {
    const auto before = static_cast<std::size_t>(row) * static_cast<std::size_t>(columns);
    return values.at(before + static_cast<std::size_t>(column));
  }
};

// Curves, or a grid if it has cells.
struct Panel {
  std::string title;
  Axis x;
  Axis y;
  std::vector<Curve> curves;
  Grid grid;
};

struct Chart {
  std::string title;
  std::vector<Panel> panels;
  int panels_across = 1;  // in a file; a terminal shows them one below the other
};

// 0 to max, with ticks at both ends and at each quarter of the code range: 0, 256, ... 1023.
Axis code_axis(const std::string& label, int max);

// From low to high, extended to round numbers at both ends.
Axis round_axis(const std::string& label, double low, double high);

// The number of a tick or scale, as short as possible.
std::string number_text(double number);

// The straight line between two corners, for comparison.
Curve reference_line(const std::string& name, Point from, Point to);

// The position of a value on a grid's colour scale, 0 to 1. Zero is at 0.5 if the range has
// negative values.
double scale_position(const Grid& grid, double value);

// The colour at that position, each channel 0 to 1: from blue through white to red if zero is the
// middle, otherwise from dark violet through green to yellow.
std::array<double, 3> scale_colour(const Grid& grid, double value);

}  // namespace plot

#endif  // PLOT_CHART_H_
