// Charts as text: curves in Braille dots, eight to a character; grids in coloured or shaded blocks.
#ifndef PLOT_TERMINAL_H_
#define PLOT_TERMINAL_H_

#include <span>
#include <string>

#include "plot/chart.h"

namespace plot {

struct TerminalSize {
  int columns = 80;
  int rows = 24;
};

// UTF-8 lines no longer than the terminal's width (at least 40 columns are assumed).
// Without colours the curves of a panel cannot be told apart, so each gets its own plot.
std::string draw_in_terminal(const Chart& chart, TerminalSize size, bool colours);

// A curve in one line of `columns` block characters whose heights range from low to high. With more
// values than columns, each column shows the mean of its share.
std::string sparkline(std::span<const double> values, double low, double high, int columns);

}  // namespace plot

#endif  // PLOT_TERMINAL_H_
