// Charts as files, drawn by cairo.
#ifndef PLOT_DRAWING_H_
#define PLOT_DRAWING_H_

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "plot/chart.h"

namespace plot {

enum class FileFormat { kPng, kSvg };

struct DrawingSize {
  int width = 900;  // pixels of a PNG, user units of an SVG
  int height = 600;
};

// Thrown if cairo cannot make the file, with cairo's reason.
struct DrawingError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The bytes of a whole file. Throws DrawingError.
std::vector<std::uint8_t> draw_file(const Chart& chart, FileFormat format, DrawingSize size);

}  // namespace plot

#endif  // PLOT_DRAWING_H_
