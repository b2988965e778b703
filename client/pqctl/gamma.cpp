#include <algorithm>
#include <array>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "charts.h"
#include "command_syntax.h"
#include "commands.h"
#include "files.h"
#include "plot/terminal.h"
#include "pqclient/error.h"
#include "pqclient/gamma_curve.h"
#include "pqclient/target.h"
#include "terminal_size.h"
#include "write_plan.h"

namespace {

using pqclient::Error;
using pqclient::ErrorKind;
using pqclient::GammaCurves;
using pqclient::GammaTables;
using pqclient::JsonPtr;
using pqclient::Target;

constexpr std::array<const char*, 3> kTables = {"gammaTab_R", "gammaTab_G", "gammaTab_B"};

struct Arguments {
  std::optional<double> power;
  bool srgb = false;
  bool reset = false;
  std::string points;
  std::string file;
  std::optional<double> full_scale;
  std::vector<double> gains;  // empty, or for red, green and blue
  bool as_given = false;
  bool dry_run = false;
};

GammaCurves same_for_all(const pqclient::GammaCurve& curve) {
  return {curve, curve, curve};
}

GammaCurves curves_in_file(const Arguments& arguments) {
  const std::string text = read_input(arguments.file);
  const bool cube = arguments.file.ends_with(".cube") || pqclient::is_cube(text);
  if (cube) return pqclient::gamma_of_cube(pqclient::parse_cube(text));
  return pqclient::parse_gamma_csv(text, arguments.full_scale);
}

void check_choice(const Arguments& arguments) {
  const int curves = (arguments.power ? 1 : 0) + (arguments.srgb ? 1 : 0) +
                     (arguments.reset ? 1 : 0) + (arguments.points.empty() ? 0 : 1) +
                     (arguments.file.empty() ? 0 : 1);
  if (curves > 1 || (curves == 0 && arguments.gains.empty())) {
    throw Error(ErrorKind::kInput,
                "a curve is needed: --power, --srgb, --points, --from or --reset, or --gain for "
                "the stored tables");
  }
}

// Without a curve of its own, a gain applies to the stored tables.
GammaCurves wanted_curves(const Arguments& arguments, const cJSON& stored) {
  if (arguments.power) return same_for_all(pqclient::power_curve(*arguments.power));
  if (arguments.srgb) return same_for_all(pqclient::srgb_curve());
  if (arguments.reset) return same_for_all(pqclient::power_curve(1));
  if (!arguments.points.empty()) {
    return same_for_all(pqclient::curve_through(pqclient::parse_control_points(arguments.points)));
  }
  if (!arguments.file.empty()) return curves_in_file(arguments);
  return pqclient::gamma_of_section(stored);
}

void multiply(GammaCurves& curves, const std::vector<double>& gains) {
  for (std::size_t channel = 0; channel < gains.size(); ++channel) {
    for (double& value : curves.at(channel))
      value *= gains[channel];
  }
}

// Notes the changes that were made to the curves, and signs of a mistake.
GammaTables make_tables(const Session& session, const GammaCurves& curves, bool as_given) {
  GammaTables tables = pqclient::quantize(curves, as_given);
  if (tables.clipped > 0 && as_given) {
    throw Error(ErrorKind::kInput, std::to_string(tables.clipped) +
                                       " entries are below 0 or above full scale: correct them, or "
                                       "leave out --as-given to have them clipped");
  }
  if (tables.clipped > 0) {
    session.note(std::to_string(tables.clipped) + " entries clipped to 0..65535");
  }
  if (tables.raised > 0) {
    session.note(
        std::to_string(tables.raised) +
        " entries raised to their predecessor, so that no table falls; --as-given keeps them");
  }
  int largest = 0;
  for (const auto& table : tables.entries)
    largest = std::max<int>(largest, std::ranges::max(table));
  constexpr int kTenBits = 1023;
  if (largest <= 4 * kTenBits) {
    session.note(
        "the largest entry is " + std::to_string(largest) +
        " of 65535: the picture will be nearly black. 10-bit codes need --full-scale 1023");
  }
  return tables;
}

JsonPtr section_with(const cJSON& stored, const GammaTables& tables) {
  JsonPtr section = pqclient::copy_json(stored);
  for (std::size_t channel = 0; channel < kTables.size(); ++channel) {
    JsonPtr table(cJSON_CreateArray());
    for (const std::uint16_t entry : tables.entries.at(channel))
      add_element(*table, JsonPtr(cJSON_CreateNumber(entry)));
    pqclient::parse_target(std::string("gamma/") + kTables.at(channel))
        .replace_in(section, std::move(table));
  }
  return section;
}

void print_plot(const Session& session, const cJSON& section) {
  const plot::Chart chart = gamma_chart(section, "dry run, nothing sent");
  std::cout << plot::draw_in_terminal(chart, terminal_size(), session.palette().is_on());
}

void set_gamma(Session& session, const Arguments& arguments) {
  check_choice(arguments);
  if (!arguments.dry_run) session.require_writable();
  const Target target = pqclient::parse_target("gamma");
  const JsonPtr before = session.read_section(target);
  GammaCurves curves = wanted_curves(arguments, *before);
  multiply(curves, arguments.gains);
  const GammaTables tables = make_tables(session, curves, arguments.as_given);
  const JsonPtr asked = section_with(*before, tables);
  if (arguments.dry_run && !session.options().json) {
    print_plot(session, *asked);
    return;
  }
  std::vector<PlannedWrite> writes;
  writes.push_back({target, pqclient::copy_json(*before), pqclient::copy_json(*asked)});
  write_all(session, std::move(writes), {.is_dry_run = arguments.dry_run});
}

}  // namespace

void add_gamma(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax command(add_command(
      grammar,
      {.name = "gamma",
       .group = kChange,
       .about = "Load gamma tables: a formula, control points, a file, gains",
       .more =
           R"(All three tables are written. Values outside 0..65535 are clipped, and an entry lower than its
predecessor is raised to it; a note says so. If csc has gains it is rewritten afterwards, because
loading gamma tables drops them.

A .csv file has rows of one value, of red, green and blue, or of an input followed by either. If no
value exceeds 1 they are fractions of full scale, otherwise 16-bit codes. Any number of rows other
than the table's 1024 is taken as control points of a smooth curve. From a .cube file only the
response to greys is used.

Examples:
  pqctl gamma --power 2.2
  pqctl gamma --srgb --gain 1 0.98 0.93
  pqctl gamma --points 0:0,0.25:0.1,0.75:0.8,1:1 --dry-run
  pqctl gamma --from panel.csv --full-scale 1023
  pqctl gamma --reset
)"},
      [arguments](Session& session) { set_gamma(session, *arguments); }));
  constexpr const char* kCurve = "The curve, one of these (default: the stored tables)";
  command.number("--power", {"P", "input ^ P: 1 is straight, above 1 darker"}, arguments->power)
      .under(kCurve)
      .flag("--srgb", "sRGB's curve from code to light", arguments->srgb)
      .under(kCurve)
      .word("--points",
            {"IN:OUT,...", "Control points in 0 to 1, with a smooth curve through them"},
            arguments->points)
      .under(kCurve)
      .word("--from", {"FILE", "A .csv or .cube file; - is standard input"}, arguments->file)
      .under(kCurve)
      .flag("--reset", "Straight lines", arguments->reset)
      .under(kCurve)
      .numbers("--gain", {"R G B", "Multiply the tables; 1 leaves them as they are"},
               arguments->gains, 3, {0, 100})
      .number("--full-scale", {"N", "For a .csv file: the value of full scale"},
              arguments->full_scale, Bounds{1e-6, 1e9})
      .flag("--as-given", "Keep entries that fall; refuse instead of clipping", arguments->as_given)
      .flag("-n,--dry-run", "Send nothing; plot the result, or with --json print the operations",
            arguments->dry_run);
}
