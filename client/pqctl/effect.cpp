#include "effect.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

using namespace std::string_view_literals;
using pqclient::ChangedValue;

constexpr std::array kSliders = {"cscBrightness"sv, "cscContrast"sv, "cscSaturation"sv, "cscHue"sv};
constexpr std::array kGains = {"cscRGain"sv, "cscGGain"sv, "cscBGain"sv};
constexpr int kUnityGain = 256;

struct Switch {
  std::string_view section;
  const char* member;
  std::string_view prefix;  // of the members it controls: sharp also has the AI stages' members
};
constexpr std::array kSwitches = {Switch{"dci", "dciEnable", "dci"}, Switch{"acm", "acmEnable", ""},
                                  Switch{"sharp", "sharpEnable", "sharp"}};

// "cscHue" of "csc/cscHue", "gammaTab_R" of "gamma/gammaTab_R/3".
std::string_view member_of(const ChangedValue& change) {
  std::string_view name = change.table.empty() ? change.path : change.table;
  return name.substr(name.rfind('/') + 1);
}

bool is_off(const cJSON& section, const char* name) {
  const cJSON* value = pqclient::last_member(section, name);
  return cJSON_IsNumber(value) != 0 && value->valueint == 0;
}

bool is_low_latency(const cJSON& csc) {
  const cJSON* mode = pqclient::last_member(csc, "cscMode");
  return cJSON_IsString(mode) != 0 && mode->valuestring == "LOW_LATENCY_MODE"sv;
}

bool is_any_among(const auto& names, const std::vector<ChangedValue>& changes) {
  return std::ranges::any_of(changes, [&](const ChangedValue& change) {
    return std::ranges::find(names, member_of(change)) != names.end();
  });
}

// In high-quality mode the board keeps the sliders neutral and always applies the gains; in
// low-latency mode it applies both, but only with csc enabled.
std::vector<std::string> csc_notes(const std::vector<ChangedValue>& changes, const cJSON& csc) {
  const bool slides = is_any_among(kSliders, changes);
  if (!slides && !is_any_among(kGains, changes)) return {};
  std::vector<std::string> notes;
  if (slides && !is_low_latency(csc)) {
    notes.emplace_back(
        "brightness, contrast, saturation and hue show only in low-latency mode: pqctl set "
        "csc/cscMode LOW_LATENCY_MODE");
  } else if (is_low_latency(csc) && is_off(csc, "cscEnable")) {
    notes.emplace_back(
        "sliders and gains show in low-latency mode only with csc on: pqctl set csc/cscEnable on");
  }
  return notes;
}

}  // namespace

std::vector<std::string> effect_notes(const pqclient::Target& section,
                                      const std::vector<ChangedValue>& changes,
                                      const cJSON& section_value) {
  if (section.document != pqclient::Document::kPq) return {};
  const std::string_view name = section.section->name;
  if (name == "csc") return csc_notes(changes, section_value);
  const auto* own_switch = std::ranges::find(kSwitches, name, &Switch::section);
  if (own_switch == kSwitches.end() || !is_off(section_value, own_switch->member)) return {};
  const bool is_concerned = std::ranges::any_of(changes, [&](const ChangedValue& change) {
    return member_of(change) != own_switch->member &&
           member_of(change).starts_with(own_switch->prefix);
  });
  if (!is_concerned) return {};
  const std::string place = std::string(name) + "/" + own_switch->member;
  return {place + " is off, so this does not show: pqctl set " + place + " on"};
}

bool has_gains(const cJSON& csc) {
  if (is_low_latency(csc) && is_off(csc, "cscEnable")) return false;
  return std::ranges::any_of(kGains, [&](std::string_view name) {
    const cJSON* gain = pqclient::last_member(csc, name);
    return cJSON_IsNumber(gain) != 0 && gain->valueint != kUnityGain;
  });
}
