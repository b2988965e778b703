#include <iostream>
#include <memory>
#include <string>

#include "charts.h"
#include "command_syntax.h"
#include "commands.h"
#include "files.h"
#include "plot/drawing.h"
#include "plot/terminal.h"
#include "pqclient/error.h"
#include "pqclient/target.h"
#include "terminal_size.h"

namespace {

using pqclient::Error;
using pqclient::ErrorKind;
using pqclient::Target;

struct Arguments {
  std::string what;
  std::string cube_file;
  std::string output;
  int width = 0;  // 0: chosen to suit the chart
  int height = 0;
};

[[noreturn]] void refuse(const std::string& what) {
  throw Error(ErrorKind::kInput,
              what +
                  " has no curve: plot gamma, dci, acm, one of their tables, a scene such as "
                  "ai/dci/nature-sky, or lut FILE");
}

plot::Chart section_chart(const cJSON& value, const Target& target, const std::string& title) {
  const std::string_view name = target.section->name;
  if (name == "gamma") return gamma_chart(value, title);
  if (name == "dci") return dci_chart(value, title);
  if (name == "acm") return acm_chart(value, title);
  refuse(target.text());
}

plot::Chart board_chart(Session& session, const std::string& what) {
  const Target target = pqclient::parse_target(what);
  const bool is_of_a_scene = target.document == pqclient::Document::kAipq;
  if ((target.member != nullptr && !target.member->is_table()) || target.index ||
      (is_of_a_scene && !target.scene)) {
    refuse(target.text());
  }
  const pqclient::JsonPtr section = session.read_section(target);
  const cJSON* value = target.find_in(*section);
  if (value == nullptr) {
    throw Error(ErrorKind::kBadAnswer, "the answer has no " + target.text());
  }
  const std::string title = target.text() + " of " + session.board().text();
  return target.member != nullptr ? table_chart(*value, *target.member, title)
                                  : section_chart(*value, target, title);
}

plot::Chart cube_chart(const std::string& file) {
  if (file.empty()) {
    throw Error(ErrorKind::kInput,
                "the board does not send its 3D table: fetch the file that it has written, for "
                "example with adb pull /data/lut_0.cube, then pqctl plot lut lut_0.cube");
  }
  const pqclient::Cube cube = pqclient::parse_cube(read_input(file));
  return lut_chart(cube, cube.title.empty() ? file : file + ": " + cube.title);
}

plot::FileFormat format_of(const std::string& file) {
  if (file.ends_with(".png")) return plot::FileFormat::kPng;
  if (file.ends_with(".svg")) return plot::FileFormat::kSvg;
  throw Error(ErrorKind::kInput,
              "cannot tell what to draw from the name " + file + ": end it with .png or .svg");
}

void draw(const plot::Chart& chart, const Arguments& arguments) {
  constexpr int kWidth = 960;
  constexpr int kOnePanelHeight = 600;
  constexpr int kRowHeight = 320;
  const int rows =
      (static_cast<int>(chart.panels.size()) + chart.panels_across - 1) / chart.panels_across;
  const plot::DrawingSize size = {arguments.width > 0 ? arguments.width : kWidth,
                                  arguments.height > 0 ? arguments.height
                                  : rows == 1          ? kOnePanelHeight
                                                       : rows * kRowHeight};
  try {
    const auto file = plot::draw_file(chart, format_of(arguments.output), size);
    write_output(arguments.output, {reinterpret_cast<const char*>(file.data()), file.size()});
  } catch (const plot::DrawingError& error) {
    throw Error(ErrorKind::kFile, "cannot draw " + arguments.output + ": " + error.what());
  }
}

void plot_chart(Session& session, const Arguments& arguments) {
  if (!arguments.output.empty()) format_of(arguments.output);  // refuse before the query
  const bool has_size = arguments.width > 0 || arguments.height > 0;
  if (has_size && arguments.output.empty()) {
    throw Error(ErrorKind::kInput, "--width and --height are for a file: add -o FILE");
  }
  const plot::Chart chart = arguments.what == "lut" ? cube_chart(arguments.cube_file)
                                                    : board_chart(session, arguments.what);
  if (arguments.output.empty()) {
    std::cout << plot::draw_in_terminal(chart, terminal_size(), session.palette().is_on());
  } else {
    draw(chart, arguments);
  }
}

}  // namespace

void add_plot(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax command(add_command(
      grammar,
      {.name = "plot",
       .group = kSee,
       .about = "Draw curves and tables, in the terminal or as a PNG or SVG file",
       .more =
           R"(The dashed line marks the values that change nothing. In the terminal, colours tell the curves of
a plot apart; without colours each curve has its own plot.

Examples:
  pqctl plot gamma
  pqctl plot acm -o acm.png
  pqctl plot ai/dci/nature-sky -o sky.svg
  adb pull /data/lut_0.cube; pqctl plot lut lut_0.cube
)"},
      [arguments](Session& session) { plot_chart(session, *arguments); }));
  command
      .word("what",
            {"WHAT", "gamma, dci, acm, one of their tables, a scene (ai/dci/SCENE), or lut"},
            arguments->what, Need::kRequired)
      .word("file", {"FILE", "With lut: the .cube file; - is standard input"}, arguments->cube_file)
      .word("-o,--output", {"FILE", "File to draw, .png or .svg"}, arguments->output)
      .number("--width", {"N", "Width of the file in pixels"}, arguments->width, {200, 10'000})
      .number("--height", {"N", "Height of the file in pixels"}, arguments->height, {150, 10'000});
}
