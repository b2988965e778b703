#include "effect.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>

namespace {

using namespace std::string_view_literals;

constexpr std::array kSliders = {"cscBrightness"sv, "cscContrast"sv, "cscSaturation"sv, "cscHue"sv};
constexpr std::array kGains = {"cscRGain"sv, "cscGGain"sv, "cscBGain"sv};

bool is_among(const auto& names, std::string_view name) {
  return std::ranges::find(names, name) != names.end();
}

}  // namespace

// In high-quality mode the board keeps the sliders neutral and always applies the gains; in
// low-latency mode it applies both, but only with csc enabled.
void print_effect_note(std::ostream& out, const pqclient::Target& target,
                       const cJSON& section_value) {
  if (target.document != pqclient::Document::kPq || target.section->name != "csc" ||
      target.member == nullptr)
    return;
  const std::string_view name = target.member->name;
  const bool is_slider = is_among(kSliders, name);
  if (!is_slider && !is_among(kGains, name)) return;

  const cJSON* mode = pqclient::last_member(section_value, "cscMode");
  const cJSON* enable = pqclient::last_member(section_value, "cscEnable");
  const bool is_low_latency =
      cJSON_IsString(mode) != 0 && mode->valuestring == "LOW_LATENCY_MODE"sv;
  if (is_slider && !is_low_latency) {
    out << "note: " << name << " shows only with cscMode LOW_LATENCY_MODE\n";
  } else if (is_low_latency && cJSON_IsNumber(enable) != 0 && enable->valueint == 0) {
    out << "note: " << name << " shows only with cscEnable 1\n";
  }
}
