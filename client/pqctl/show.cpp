// One page about a board: its switches, its gains, and its curves.
#include <algorithm>
#include <array>
#include <iomanip>
#include <iostream>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "commands.h"
#include "plot/terminal.h"
#include "pqclient/target.h"

namespace {

using pqclient::JsonPtr;
using pqclient::Target;

constexpr std::array<std::string_view, 5> kSections = {"csc", "gamma", "dci", "acm", "sharp"};
constexpr int kSparkColumns = 32;

// All values are read before anything is printed, so a page is complete or absent.
struct Page {
  int platform = 0;
  std::vector<std::pair<std::string, JsonPtr>> sections;  // in the order of kSections
  JsonPtr scenes_dci;                                     // null if the board has no AI document
  JsonPtr scenes_acm;

  [[nodiscard]] const cJSON& section(std::string_view name) const {
    return *std::ranges::find(sections, name, [](const auto& entry) {
              return entry.first;
            })->second;
  }
};

JsonPtr read_scenes(Session& session, std::string_view place) {
  const Target target = pqclient::parse_target(place);
  const auto answer = session.client().query_aipq(target.section_pointer());
  return answer.value != nullptr ? pqclient::copy_json(*answer.value) : nullptr;
}

Page read_page(Session& session) {
  Page page;
  for (const std::string_view name : kSections)
    page.sections.emplace_back(name, session.read_section(pqclient::parse_target(name)));
  page.scenes_dci = read_scenes(session, "ai/dci");
  page.scenes_acm = read_scenes(session, "ai/acm");
  const auto answer = session.client().query_pq("/csc");
  page.platform = answer.platform.value_or(0);
  return page;
}

std::string platform_text(int number) {
  constexpr std::array kNames = {"qxt100, or unknown to the server", "qxt200", "qxt300"};
  const bool is_known = number >= 0 && static_cast<std::size_t>(number) < kNames.size();
  return std::to_string(number) +
         (is_known ? " (" + std::string(kNames.at(static_cast<std::size_t>(number))) + ")" : "");
}

std::string text_of(const cJSON& section, std::string_view member) {
  const cJSON* value = pqclient::last_member(section, member);
  if (value == nullptr) return "missing";
  return cJSON_IsString(value) != 0 ? value->valuestring : pqclient::print_json(*value);
}

class Printer {
 public:
  explicit Printer(Palette palette) : palette_(palette) {}

  void heading(const std::string& name) const { std::cout << palette_.bold(name) << '\n'; }

  void line(std::string_view name, const std::string& value) const {
    std::cout << "  " << std::left << std::setw(12) << name << std::right << value << '\n';
  }

  [[nodiscard]] std::string switched(const cJSON& section, std::string_view member) const {
    const std::string text = text_of(section, member);
    return text == "0"   ? palette_.dim("off")
           : text == "1" ? palette_.green("on")
                         : palette_.yellow(text);
  }

  // The table as a sparkline, with its first and last number.
  [[nodiscard]] std::string curve(const cJSON& section, const std::string& member, double low,
                                  double high) const {
    const cJSON* table = pqclient::last_member(section, member);
    if (table == nullptr || cJSON_GetArraySize(table) == 0) return "missing";
    std::vector<double> values;
    for (const cJSON* entry = table->child; entry != nullptr; entry = entry->next)
      values.push_back(entry->valuedouble);
    return plot::sparkline(values, low, high, kSparkColumns) + "  " +
           plot::number_text(values.front()) + " to " + plot::number_text(values.back());
  }

 private:
  Palette palette_;
};

void print_csc(const Printer& printer, const cJSON& csc) {
  printer.heading("csc");
  printer.line("enable", printer.switched(csc, "cscEnable") + ", " + text_of(csc, "cscMode"));
  std::string controls;
  for (const char* name : {"Brightness", "Contrast", "Saturation", "Hue"}) {
    controls.append(controls.empty() ? "" : ", ")
        .append(name)
        .append(" ")
        .append(text_of(csc, std::string("csc") + name));
  }
  printer.line("controls", controls + "  (neutral is 256)");
  printer.line("gains", "R " + text_of(csc, "cscRGain") + ", G " + text_of(csc, "cscGGain") +
                            ", B " + text_of(csc, "cscBGain") + "  (256 is unity)");
}

void print_gamma(const Printer& printer, const cJSON& gamma) {
  printer.heading("gamma");
  printer.line("enable", printer.switched(gamma, "gammaEnable"));
  for (const char* channel : {"R", "G", "B"})
    printer.line(channel, printer.curve(gamma, std::string("gammaTab_") + channel, 0, 65535));
}

void print_dci(const Printer& printer, const cJSON& dci) {
  printer.heading("dci");
  printer.line("enable", printer.switched(dci, "dciEnable"));
  for (const char* range : {"low", "mid", "high"})
    printer.line(range, printer.curve(dci, std::string("dciWgtCoef_") + range, 0, 1023));
}

void print_acm(const Printer& printer, const cJSON& acm) {
  printer.heading("acm");
  printer.line("enable", printer.switched(acm, "acmEnable"));
  printer.line("gains", "luma " + text_of(acm, "lumGain") + ", hue " + text_of(acm, "hueGain") +
                            ", saturation " + text_of(acm, "satGain"));
  for (const auto& [name, member] : {std::pair{"luma by hue", "acmTableDeltaYbyH"},
                                     {"hue by hue", "acmTableDeltaHbyH"},
                                     {"sat. by hue", "acmTableDeltaSbyH"}}) {
    printer.line(name, printer.curve(acm, member, -255, 255));
  }
}

void print_sharp(const Printer& printer, const cJSON& sharp) {
  printer.heading("sharp");
  printer.line("enable", printer.switched(sharp, "sharpEnable") + ", peaking gain " +
                             text_of(sharp, "sharpPeakingGain"));
  std::string controls;
  for (const char* name : {"Shoot", "Coring", "Gain", "Limit"}) {
    controls.append(controls.empty() ? "" : ", ")
        .append(name)
        .append(" ")
        .append(printer.switched(sharp, std::string("sharpEnable") + name + "Ctrl"));
  }
  printer.line("controls", controls);
  printer.line("AI", "super-resolution " + printer.switched(sharp, "AISREnable") +
                         ", scene detection " + printer.switched(sharp, "AISDEnable") +
                         ", tuning " + printer.switched(sharp, "AISRTuningEnable"));
}

std::string scene_text(const Printer& printer, const Page& page, std::size_t scene) {
  std::string text;
  for (const auto& [scenes, name, member] : {std::tuple{page.scenes_dci.get(), "dci ", "dciEnable"},
                                             {page.scenes_acm.get(), ", acm ", "acmEnable"}}) {
    const cJSON* values =
        scenes != nullptr ? pqclient::element(*scenes, static_cast<int>(scene)) : nullptr;
    text += name + (values != nullptr ? printer.switched(*values, member) : "missing");
  }
  return text;
}

// Six scenes of nature, and the same six of words, side by side.
void print_scenes(const Printer& printer, const Page& page) {
  printer.heading("AI scenes");
  constexpr std::size_t kHalf = pqclient::kScenes.size() / 2;
  for (std::size_t i = 0; i < kHalf; ++i) {
    std::cout << std::left;
    for (const std::size_t scene : {i, i + kHalf}) {
      std::cout << "  " << std::setw(16) << pqclient::kScenes.at(scene)
                << scene_text(printer, page, scene) << (scene == i ? "  " : "\n");
    }
    std::cout << std::right;
  }
}

JsonPtr page_as_json(const Page& page) {
  JsonPtr root(cJSON_CreateObject());
  add_member(*root, "platform", JsonPtr(cJSON_CreateNumber(page.platform)));
  for (const auto& [name, value] : page.sections)
    add_member(*root, name.c_str(), pqclient::copy_json(*value));
  JsonPtr scenes(cJSON_CreateObject());
  if (page.scenes_dci) add_member(*scenes, "dci", pqclient::copy_json(*page.scenes_dci));
  if (page.scenes_acm) add_member(*scenes, "acm", pqclient::copy_json(*page.scenes_acm));
  add_member(*root, "ai", std::move(scenes));
  return root;
}

void show(Session& session) {
  const Page page = read_page(session);
  if (session.options().json) {
    std::cout << pqclient::print_json(*page_as_json(page)) << '\n';
    return;
  }
  const Printer printer(session.palette());
  printer.heading("board");
  printer.line("address", session.board().text());
  printer.line("platform", platform_text(page.platform));
  print_csc(printer, page.section("csc"));
  print_gamma(printer, page.section("gamma"));
  print_dci(printer, page.section("dci"));
  print_acm(printer, page.section("acm"));
  print_sharp(printer, page.section("sharp"));
  print_scenes(printer, page);
}

}  // namespace

void add_show(const Grammar& grammar) {
  add_command(grammar,
              {.name = "show",
               .group = kSee,
               .about = "Sum up a board on one page: platform, mode, switches, gains, curves",
               .more = R"(With --json: everything that the board has stored, as one object.

Examples:
  pqctl show
  pqctl --board living-room show --json > living-room.json
)"},
              show);
}
