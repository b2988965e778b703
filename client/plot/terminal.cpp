#include "plot/terminal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

namespace plot {
namespace {

constexpr int kLabelColumns = 8;  // of the y axis, with a blank after the number
constexpr int kMinColumns = 40;
constexpr int kMinRows = 6;
constexpr int kMaxPlotColumns = 100;  // a wider plot shows no more detail
constexpr int kMaxPlotRows = 24;
// Lines around a panel's plot: title, x axis, its numbers and label, legend, an empty line.
constexpr int kLinesAround = 5;

constexpr std::string_view kPlain = "\x1b[0m";

std::string_view escape_of(Colour colour) {
  constexpr std::array<std::string_view, 7> kEscapes = {
      "\x1b[91m", "\x1b[92m", "\x1b[94m", "\x1b[33m", "\x1b[96m", "\x1b[95m", "\x1b[90m"};
  return kEscapes.at(static_cast<std::size_t>(colour));
}

std::string utf8(std::uint32_t code_point) {  // of three bytes, as all block characters are
  return {static_cast<char>(0xE0 | code_point >> 12),
          static_cast<char>(0x80 | (code_point >> 6 & 0x3F)),
          static_cast<char>(0x80 | (code_point & 0x3F))};
}

std::string right_aligned(const std::string& text, int columns) {
  const auto size = static_cast<int>(text.size());
  return std::string(static_cast<std::size_t>(std::max(0, columns - size)), ' ') + text;
}

double fraction(const Axis& axis, double value) {
  return (value - axis.low) / (axis.high - axis.low);
}

// The row or column (of `count`) that contains a value on the axis; -1 if it is outside.
int position(const Axis& axis, double value, int count) {
  const double place = fraction(axis, value);
  if (!(place >= 0 && place <= 1)) return -1;
  return std::min(static_cast<int>(place * count), count - 1);
}

// 2 x 4 dots per character, each character in the colour drawn in it last.
class DotCanvas {
 public:
  DotCanvas(int columns, int rows)
      : columns_(columns),
        rows_(rows),
        cells_(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)) {}

  [[nodiscard]] int width() const { return 2 * columns_; }
  [[nodiscard]] int height() const { return 4 * rows_; }

  // x from the left, y from the top.
  void dot(int x, int y, Colour colour) {
    // Unicode numbers the dots of a Braille pattern down the left column, then down the right one;
    // the fourth row was added later and has the last two numbers.
    constexpr std::array<std::array<std::uint8_t, 2>, 4> kBits = {
        {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}}};
    Cell& cell = cells_.at(index(x / 2, y / 4));
    cell.dots |= kBits.at(static_cast<std::size_t>(y % 4)).at(static_cast<std::size_t>(x % 2));
    cell.colour = colour;
  }

  // Without trailing blanks; escape sequences only where the colour changes.
  [[nodiscard]] std::string row_text(int row, bool colours) const {
    constexpr std::uint32_t kBraille = 0x2800;
    std::string text;
    std::string_view escape;
    std::size_t blanks = 0;
    for (int column = 0; column < columns_; ++column) {
      const Cell& cell = cells_.at(index(column, row));
      if (cell.dots == 0) {
        ++blanks;
        continue;
      }
      text.append(std::exchange(blanks, 0), ' ');
      if (colours && escape != escape_of(cell.colour)) text += escape = escape_of(cell.colour);
      text += utf8(kBraille + cell.dots);
    }
    return text.append(escape.empty() ? "" : kPlain);
  }

 private:
  struct Cell {
    std::uint8_t dots = 0;
    Colour colour = Colour::kGrey;
  };

  [[nodiscard]] std::size_t index(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(column);
  }

  int columns_;
  int rows_;
  std::vector<Cell> cells_;
};

// The value at x, linear between the points.
double value_at(const std::vector<Point>& points, double x) {
  const auto after = std::ranges::lower_bound(points, x, {}, &Point::x);
  if (after == points.end()) return points.back().y;
  if (after == points.begin() || after->x == x) return after->y;
  const Point& before = *(after - 1);
  return std::lerp(before.y, after->y, (x - before.x) / (after->x - before.x));
}

// Draws column by column; where the curve is steep, fills in the dots between neighbours.
void draw_curve(DotCanvas& canvas, const Panel& panel, const Curve& curve) {
  int last = -1;
  for (int column = 0; column < canvas.width(); ++column) {
    const double x = std::lerp(panel.x.low, panel.x.high, column / (canvas.width() - 1.0));
    if (curve.points.empty() || x < curve.points.front().x || x > curve.points.back().x) continue;
    const int up = position(panel.y, value_at(curve.points, x), canvas.height());
    if (up < 0) {
      last = -1;
      continue;
    }
    if (curve.is_reference) {
      if (column % 4 == 0) canvas.dot(column, canvas.height() - 1 - up, curve.colour);
      continue;
    }
    const int from = last < 0 ? up : last + (up > last ? 1 : up < last ? -1 : 0);
    for (int y = std::min(from, up); y <= std::max(from, up); ++y)
      canvas.dot(column, canvas.height() - 1 - y, curve.colour);
    last = up;
  }
}

// The number of the tick in this row, counted from the top.
std::string row_label(const Axis& axis, int row, int rows) {
  for (const double tick : axis.ticks) {
    if (position(axis, tick, rows) == rows - 1 - row) return number_text(tick);
  }
  return "";
}

// Tick numbers below the plot, each centred on its tick; overlapping ones are left out.
std::string column_labels(const Axis& axis, int columns) {
  std::string line(static_cast<std::size_t>(columns), ' ');
  int free_from = 0;
  for (const double tick : axis.ticks) {
    const std::string text = number_text(tick);
    const auto size = static_cast<int>(text.size());
    const int middle = position(axis, tick, columns);
    const int start = std::clamp(middle - size / 2, 0, columns - size);
    if (start < free_from) continue;
    line.replace(static_cast<std::size_t>(start), text.size(), text);
    free_from = start + size + 1;
  }
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

std::string frame_row(const std::string& label, const std::string& content) {
  return right_aligned(label, kLabelColumns - 1) + " │" + content + "\n";
}

std::string frame_foot(const Axis& axis, int columns) {
  std::string foot(kLabelColumns, ' ');
  foot += "└";
  for (int i = 0; i < columns; ++i)
    foot += "─";
  const std::string indent(kLabelColumns + 1, ' ');
  return foot + "\n" + indent + column_labels(axis, columns) + "\n" + indent + axis.label + "\n";
}

std::string legend(const std::vector<Curve>& curves, bool colours) {
  std::string text(kLabelColumns - 1, ' ');
  for (const Curve& curve : curves) {
    text.append("  ").append(colours ? escape_of(curve.colour) : "");
    text.append(curve.is_reference ? "⠂⠂" : "⣀⣀").append(colours ? kPlain : "");
    text.append(" ").append(curve.name);
  }
  return text + "\n";
}

std::string draw_curves(const Panel& panel, int columns, int rows, bool colours) {
  DotCanvas canvas(columns, rows);
  for (const bool references : {true, false}) {
    for (const Curve& curve : panel.curves) {
      if (curve.is_reference == references) draw_curve(canvas, panel, curve);
    }
  }
  std::string text;
  for (int row = 0; row < rows; ++row)
    text += frame_row(row_label(panel.y, row, rows), canvas.row_text(row, colours));
  return text + frame_foot(panel.x, columns) + legend(panel.curves, colours);
}

// Two characters side by side are about square.
std::string cell_text(const Grid& grid, double value, bool colours) {
  if (colours) {
    std::string escape = "\x1b[48;2";
    for (const double part : scale_colour(grid, value))
      escape += ";" + std::to_string(std::lround(part * 255));
    return escape + "m " + std::string(kPlain);
  }
  constexpr std::array<std::string_view, 5> kShades = {" ", "░", "▒", "▓", "█"};
  return std::string(kShades.at(std::min<std::size_t>(
      static_cast<std::size_t>(scale_position(grid, value) * 5), kShades.size() - 1)));
}

std::string draw_grid(const Panel& panel, int columns, bool colours) {
  const Grid& grid = panel.grid;
  const int wide = std::min(columns, grid.columns);
  std::string text;
  for (int row = grid.rows - 1; row >= 0; --row) {
    std::string cells;
    for (int column = 0; column < wide; ++column)
      cells += cell_text(grid, grid.at(column * grid.columns / wide, row), colours);
    text += frame_row(row_label(panel.y, grid.rows - 1 - row, grid.rows), cells);
  }
  const std::string scale = "low " + cell_text(grid, grid.low, colours) + " " +
                            number_text(grid.low) + "   high " +
                            cell_text(grid, grid.high, colours) + " " + number_text(grid.high);
  return text + frame_foot(panel.x, wide) + std::string(kLabelColumns + 1, ' ') + scale + "\n";
}

std::vector<Panel> one_curve_each(const Panel& panel) {
  std::vector<Panel> panels;
  for (const Curve& curve : panel.curves) {
    if (curve.is_reference) continue;
    Panel single{panel.title, panel.x, panel.y, {curve}, {}};
    std::ranges::copy_if(panel.curves, std::back_inserter(single.curves), &Curve::is_reference);
    panels.push_back(std::move(single));
  }
  return panels;
}

std::string draw_panel(const Panel& panel, int columns, int rows, bool colours) {
  const std::string title = panel.title.empty() ? "" : panel.title + "\n";
  if (panel.grid.columns > 0) return title + draw_grid(panel, columns, colours);
  if (colours || panel.curves.size() < 3) return title + draw_curves(panel, columns, rows, colours);
  std::string text = title;
  for (const Panel& single : one_curve_each(panel))
    text += draw_curves(single, columns, rows / 2 + 1, false);
  return text;
}

}  // namespace

std::string draw_in_terminal(const Chart& chart, TerminalSize size, bool colours) {
  const int columns =
      std::min(std::max(size.columns, kMinColumns) - kLabelColumns - 2, kMaxPlotColumns);
  const int rows = std::clamp(size.rows - kLinesAround, kMinRows, kMaxPlotRows);
  std::string text = chart.title + "\n";
  for (const Panel& panel : chart.panels)
    text += draw_panel(panel, columns, rows, colours);
  return text;
}

std::string sparkline(std::span<const double> values, double low, double high, int columns) {
  constexpr std::uint32_t kFirstBlock = 0x2581;  // an eighth of the character's height
  std::string text;
  const auto count = std::min(static_cast<std::size_t>(columns), values.size());
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t from = i * values.size() / count;
    const auto share = values.subspan(from, (i + 1) * values.size() / count - from);
    const double mean =
        std::accumulate(share.begin(), share.end(), 0.0) / static_cast<double>(share.size());
    const double place = std::clamp((mean - low) / (high - low), 0.0, 1.0);
    text += utf8(kFirstBlock + std::min<std::uint32_t>(static_cast<std::uint32_t>(place * 8), 7));
  }
  return text;
}

}  // namespace plot
