// Charts as text and as files.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "plot/chart.h"
#include "plot/drawing.h"
#include "plot/terminal.h"

namespace plot {
namespace {

Chart two_curves() {
  Panel panel{"panel", code_axis("in", 1023), code_axis("out", 65535), {}, {}};
  panel.curves = {{"up", Colour::kRed, {{0, 0}, {1023, 65535}}},
                  {"down", Colour::kBlue, {{0, 65535}, {1023, 0}}},
                  reference_line("straight", {0, 0}, {1023, 65535})};
  return {"chart", {panel}, 1};
}

TEST(TerminalPlot, TellsCurvesApartByColourOrByPlotsOfTheirOwn) {
  const std::string colours = draw_in_terminal(two_curves(), {80, 24}, true);
  EXPECT_NE(colours.find("\x1b[91m"), std::string::npos);
  EXPECT_NE(colours.find("\x1b[94m"), std::string::npos);
  const std::string plain = draw_in_terminal(two_curves(), {80, 24}, false);
  EXPECT_EQ(plain.find('\x1b'), std::string::npos);
  EXPECT_NE(plain.find("⣀⣀ up  ⠂⠂ straight\n"), std::string::npos);
  EXPECT_NE(plain.find("⣀⣀ down  ⠂⠂ straight\n"), std::string::npos);
}

TEST(TerminalPlot, ShadesGridsAndSparksTables) {
  Panel panel{"", {"x", 0, 2, {0, 2}}, {"y", 0, 1, {0, 1}}, {}, {}};
  panel.grid = {3, 2, {0, 5, 10, 10, 5, 0}, 0, 10};
  const std::string text = draw_in_terminal({"", {panel}, 1}, {80, 24}, false);
  EXPECT_NE(text.find("      1 │█▒ \n      0 │ ▒█\n"), std::string::npos) << text;
  EXPECT_EQ(sparkline(std::vector<double>{0, 0, 4, 6, 9, 9}, 0, 10, 3), "▁▅█");
  EXPECT_EQ(sparkline(std::vector<double>{-1, 11}, 0, 10, 9), "▁█");
}

TEST(DrawnPlot, IsAWholeFileInEitherFormat) {
  Chart chart = two_curves();
  chart.panels.push_back({"grid", {"x", 0, 1, {0, 1}}, {"y", 0, 1, {0, 1}}, {}, {}});
  chart.panels[1].grid = {2, 2, {-1, 0, 0, 1}, -1, 1};
  const auto png = draw_file(chart, FileFormat::kPng, {400, 300});
  EXPECT_EQ(std::string(png.begin(), png.begin() + 8), "\x89PNG\r\n\x1A\n");
  const auto svg = draw_file(chart, FileFormat::kSvg, {400, 300});
  const std::string text(svg.begin(), svg.end());
  EXPECT_NE(text.find("<svg "), std::string::npos);
  EXPECT_NE(text.find("</svg>"), std::string::npos);
}

TEST(Axis, BeginsAndEndsAtRoundNumbers) {
  const Axis axis = round_axis("", -255, 255);
  EXPECT_EQ(axis.ticks, (std::vector<double>{-300, -200, -100, 0, 100, 200, 300}));
  EXPECT_EQ(round_axis("", 0, 0).high, 1);
  EXPECT_EQ(number_text(0.25), "0.25");
  EXPECT_EQ(number_text(65535), "65535");
}

}  // namespace
}  // namespace plot
