#include "plot/drawing.h"

#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <string>
#include <string_view>

namespace plot {
namespace {

using Bytes = std::vector<std::uint8_t>;

template <auto Free>
struct Call {
  void operator()(auto* object) const { Free(object); }
};
using SurfacePtr = std::unique_ptr<cairo_surface_t, Call<cairo_surface_destroy>>;
using CairoPtr = std::unique_ptr<cairo_t, Call<cairo_destroy>>;

// All lengths in pixels.
constexpr double kMargin = 14;
constexpr double kTitleHeight = 30;
constexpr double kTitleSize = 16;
constexpr double kTextSize = 11;
constexpr double kLineHeight = 17;
constexpr double kYLabelWidth = 62;  // the axis' label and its numbers
constexpr double kTickLength = 4;
constexpr double kScaleWidth = 86;  // right of a grid: the bar and its numbers
constexpr double kBarWidth = 14;

struct Box {
  double x, y, width, height;
};

std::array<double, 3> rgb_of(Colour colour) {
  constexpr std::array<std::array<double, 3>, 7> kColours = {{{0.84, 0.15, 0.16},
                                                              {0.13, 0.60, 0.17},
                                                              {0.12, 0.36, 0.85},
                                                              {0.90, 0.49, 0.05},
                                                              {0.05, 0.62, 0.66},
                                                              {0.67, 0.22, 0.66},
                                                              {0.50, 0.50, 0.50}}};
  return kColours.at(static_cast<std::size_t>(colour));
}

enum class Align { kLeft, kCentre, kRight };

// The primitives of a chart.
class Pen {
 public:
  explicit Pen(cairo_surface_t* surface) : cairo_(cairo_create(surface)) {
    cairo_select_font_face(cairo_.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo_.get(), kTextSize);
  }

  void colour(std::array<double, 3> rgb) {
    cairo_set_source_rgb(cairo_.get(), rgb[0], rgb[1], rgb[2]);
  }
  void grey(double part) { colour({part, part, part}); }

  void fill(const Box& box) {
    cairo_rectangle(cairo_.get(), box.x, box.y, box.width, box.height);
    cairo_fill(cairo_.get());
  }
  void frame(const Box& box) {
    cairo_set_line_width(cairo_.get(), 1);
    cairo_rectangle(cairo_.get(), box.x, box.y, box.width, box.height);
    cairo_stroke(cairo_.get());
  }
  void line(const std::vector<Point>& points, double width, bool dashed = false) {
    constexpr std::array<double, 2> kDashes = {4, 3};
    cairo_set_line_width(cairo_.get(), width);
    cairo_set_line_join(cairo_.get(), CAIRO_LINE_JOIN_ROUND);
    cairo_set_dash(cairo_.get(), kDashes.data(), dashed ? 2 : 0, 0);
    cairo_new_path(cairo_.get());  // drawing text leaves a current point
    for (const Point& point : points)
      cairo_line_to(cairo_.get(), point.x, point.y);
    cairo_stroke(cairo_.get());
    cairo_set_dash(cairo_.get(), nullptr, 0, 0);
  }

  // y: the baseline of the letters.
  void text(const std::string& words, double x, double y, Align align = Align::kLeft) {
    const double part = align == Align::kLeft ? 0 : align == Align::kCentre ? 0.5 : 1;
    cairo_move_to(cairo_.get(), x - part * text_width(words), y);
    cairo_show_text(cairo_.get(), words.c_str());
  }
  // Reads from bottom to top, centred at y.
  void upright_text(const std::string& words, double x, double y) {
    cairo_save(cairo_.get());
    cairo_translate(cairo_.get(), x, y);
    cairo_rotate(cairo_.get(), -std::numbers::pi / 2);
    text(words, 0, 0, Align::kCentre);
    cairo_restore(cairo_.get());
  }
  void text_size(double size) { cairo_set_font_size(cairo_.get(), size); }
  double text_width(const std::string& words) {
    cairo_text_extents_t extents{};
    cairo_text_extents(cairo_.get(), words.c_str(), &extents);
    return extents.x_advance;
  }

  void clip(const Box& box) {
    cairo_save(cairo_.get());
    cairo_rectangle(cairo_.get(), box.x, box.y, box.width, box.height);
    cairo_clip(cairo_.get());
  }
  void unclip() { cairo_restore(cairo_.get()); }

  // Off for adjacent areas, where soft edges would show as seams.
  void soft_edges(bool on) {
    cairo_set_antialias(cairo_.get(), on ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
  }

 private:
  CairoPtr cairo_;
};

class PanelDrawing {
 public:
  PanelDrawing(Pen& pen, const Panel& panel, const Box& whole)
      : pen_(pen), panel_(panel), whole_(whole), plot_(plot_box(panel, whole)) {}

  void draw() {
    draw_heading();
    if (panel_.grid.columns > 0) {
      draw_grid();
    } else {
      draw_grid_lines();
      draw_curves();
    }
    draw_axes();
  }

 private:
  static Box plot_box(const Panel& panel, const Box& whole) {
    const double right = panel.grid.columns > 0 ? kScaleWidth : kMargin;
    return {whole.x + kYLabelWidth, whole.y + 1.5 * kLineHeight, whole.width - kYLabelWidth - right,
            whole.height - 4 * kLineHeight};
  }

  [[nodiscard]] double x_of(double value) const {
    return plot_.x + plot_.width * (value - panel_.x.low) / (panel_.x.high - panel_.x.low);
  }
  [[nodiscard]] double y_of(double value) const {
    return plot_.y + plot_.height * (1 - (value - panel_.y.low) / (panel_.y.high - panel_.y.low));
  }

  // The title at the left, the legend at the right.
  void draw_heading() {
    const double base = plot_.y - 8;
    pen_.grey(0.1);
    pen_.text(panel_.title, plot_.x, base);
    constexpr double kSample = 22;  // a piece of the curve, and the gap after it
    constexpr double kBetween = 10;
    double left = plot_.x + plot_.width + kBetween;
    for (const Curve& curve : panel_.curves)
      left -= kSample + pen_.text_width(curve.name) + kBetween;
    for (const Curve& curve : panel_.curves) {
      pen_.colour(rgb_of(curve.colour));
      pen_.line({{left, base - 4}, {left + 16, base - 4}}, 2, curve.is_reference);
      pen_.grey(0.1);
      pen_.text(curve.name, left + kSample, base);
      left += kSample + pen_.text_width(curve.name) + kBetween;
    }
  }

  void draw_grid_lines() {
    pen_.grey(0.9);
    for (const double tick : panel_.x.ticks)
      pen_.line({{x_of(tick), plot_.y}, {x_of(tick), plot_.y + plot_.height}}, 1);
    for (const double tick : panel_.y.ticks)
      pen_.line({{plot_.x, y_of(tick)}, {plot_.x + plot_.width, y_of(tick)}}, 1);
  }

  void draw_curves() {
    pen_.clip(plot_);
    for (const bool references : {true, false}) {
      for (const Curve& curve : panel_.curves) {
        if (curve.is_reference != references) continue;
        std::vector<Point> points;
        for (const Point& point : curve.points)
          points.push_back({x_of(point.x), y_of(point.y)});
        pen_.colour(rgb_of(curve.colour));
        pen_.line(points, references ? 1.2 : 1.8, references);
      }
    }
    pen_.unclip();
  }

  // Where cell `index` of `count` begins, as a fraction of the plot. The axes run from the first
  // cell's centre to the last one's, so these two show one half only.
  static double cell_edge(int index, int count) {
    return count > 1 ? std::clamp((index - 0.5) / (count - 1), 0.0, 1.0) : index;
  }

  // Neighbouring cells of equal value are drawn in one piece: an SVG with thousands of cells is
  // slow.
  void draw_grid() {
    const Grid& grid = panel_.grid;
    pen_.soft_edges(false);
    for (int row = 0; row < grid.rows; ++row) {
      for (int from = 0, to = 0; from < grid.columns; from = to) {
        const double value = grid.at(from, row);
        while (to < grid.columns && grid.at(to, row) == value)
          ++to;
        pen_.colour(scale_colour(grid, value));
        const double left = cell_edge(from, grid.columns) * plot_.width;
        const double right = cell_edge(to, grid.columns) * plot_.width;
        const double low = cell_edge(row, grid.rows) * plot_.height;
        const double high = cell_edge(row + 1, grid.rows) * plot_.height;
        pen_.fill({plot_.x + left, plot_.y + plot_.height - high, right - left, high - low});
      }
    }
    draw_scale();
    pen_.soft_edges(true);
  }

  void draw_scale() {
    constexpr int kSteps = 64;
    const Grid& grid = panel_.grid;
    const Box bar = {plot_.x + plot_.width + 16, plot_.y, kBarWidth, plot_.height};
    for (int step = 0; step < kSteps; ++step) {
      const double value = std::lerp(grid.low, grid.high, (step + 0.5) / kSteps);
      pen_.colour(scale_colour(grid, value));
      const double height = bar.height / kSteps;
      pen_.fill({bar.x, bar.y + (kSteps - 1 - step) * height, bar.width, height});
    }
    pen_.grey(0.3);
    pen_.frame(bar);
    pen_.text(number_text(grid.high), bar.x + bar.width + 5, bar.y + kTextSize - 2);
    pen_.text(number_text(grid.low), bar.x + bar.width + 5, bar.y + bar.height);
  }

  void draw_axes() {
    pen_.grey(0.3);
    pen_.frame(plot_);
    const double bottom = plot_.y + plot_.height;
    for (const double tick : panel_.x.ticks) {
      pen_.line({{x_of(tick), bottom}, {x_of(tick), bottom + kTickLength}}, 1);
      pen_.text(number_text(tick), x_of(tick), bottom + kLineHeight - 1, Align::kCentre);
    }
    for (const double tick : panel_.y.ticks) {
      pen_.line({{plot_.x - kTickLength, y_of(tick)}, {plot_.x, y_of(tick)}}, 1);
      pen_.text(number_text(tick), plot_.x - kTickLength - 4, y_of(tick) + 4, Align::kRight);
    }
    pen_.grey(0.1);
    pen_.text(panel_.x.label, plot_.x + plot_.width / 2, bottom + 2 * kLineHeight - 1,
              Align::kCentre);
    pen_.upright_text(panel_.y.label, whole_.x + kTextSize, plot_.y + plot_.height / 2);
  }

  Pen& pen_;
  const Panel& panel_;
  Box whole_;
  Box plot_;
};

void draw_chart(cairo_surface_t* surface, const Chart& chart, DrawingSize size) {
  Pen pen(surface);
  pen.grey(1);
  pen.fill({0, 0, static_cast<double>(size.width), static_cast<double>(size.height)});
  pen.grey(0);
  pen.text_size(kTitleSize);
  pen.text(chart.title, kMargin, kTitleHeight - 6);
  pen.text_size(kTextSize);

  const int across = std::max(chart.panels_across, 1);
  const int down = (static_cast<int>(chart.panels.size()) + across - 1) / across;
  const double width = (size.width - 2 * kMargin) / across;
  const double height = (size.height - kTitleHeight - kMargin) / std::max(down, 1);
  int index = 0;
  for (const Panel& panel : chart.panels) {
    const int column = index % across;
    const int row = index / across;
    const Box box = {kMargin + column * width, kTitleHeight + 4 + row * height, width, height};
    PanelDrawing(pen, panel, box).draw();
    ++index;
  }
}

cairo_status_t append(void* file, const unsigned char* bytes, unsigned size) {
  auto& all = *static_cast<Bytes*>(file);
  all.insert(all.end(), bytes, bytes + size);
  return CAIRO_STATUS_SUCCESS;
}

void check(cairo_status_t status) {
  if (status != CAIRO_STATUS_SUCCESS) throw DrawingError(cairo_status_to_string(status));
}

}  // namespace

Bytes draw_file(const Chart& chart, FileFormat format, DrawingSize size) {
  Bytes file;
  const bool is_png = format == FileFormat::kPng;
  const SurfacePtr surface(
      is_png ? cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height)
             : cairo_svg_surface_create_for_stream(append, &file, size.width, size.height));
  draw_chart(surface.get(), chart, size);
  if (is_png) check(cairo_surface_write_to_png_stream(surface.get(), append, &file));
  cairo_surface_finish(surface.get());
  check(cairo_surface_status(surface.get()));
  return file;
}

}  // namespace plot
