// A chart as data: what is to be seen, without saying how it is drawn. drawing.h makes a file of
// it, terminal.h text.
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

// Values in the unit that `label` names; low < high. Every tick lies between the two.
struct Axis {
  std::string label;
  double low = 0;
  double high = 1;
  std::vector<double> ticks;
};

struct Curve {
  std::string name;
  Colour colour = Colour::kGrey;
  std::vector<Point> points;  // in the order of x
  bool is_reference = false;  // drawn faintly, below the others: what to compare with
};

// A table of two dimensions, as a map of colours.
struct Grid {
  int columns = 0;  // along x
  int rows = 0;     // along y, the first one at the bottom
  std::vector<double> values;
  double low = 0;  // what the ends of the colour scale stand for; below zero: zero is the middle
  double high = 1;

  [[nodiscard]] double at(int column, int row) const {
    const auto before = static_cast<std::size_t>(row) * static_cast<std::size_t>(columns);
    return values.at(before + static_cast<std::size_t>(column));
  }
};

// Curves, or a grid when it has cells.
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
  int panels_across = 1;  // in a file; in a terminal they stand one below the other
};

// 0 to max, with ticks at both ends and at each quarter of the range of codes: 0, 256, ... 1023.
Axis code_axis(const std::string& label, int max);

// From low to high or somewhat beyond, so that it begins and ends at round numbers.
Axis round_axis(const std::string& label, double low, double high);

// A tick's or a scale's number, as short as it can be written.
std::string number_text(double number);

// The straight line between two corners, to compare with.
Curve reference_line(const std::string& name, Point from, Point to);

// Where in the range of a grid's colour scale a value lies, 0 to 1. Zero is at 0.5 when the range
// has negative values.
double scale_position(const Grid& grid, double value);

// The colour there, as parts of 1: blue over white to red when zero is the middle, otherwise from
// dark violet over green to yellow.
std::array<double, 3> scale_colour(const Grid& grid, double value);

}  // namespace plot

#endif  // PLOT_CHART_H_
