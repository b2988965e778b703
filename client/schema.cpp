#include "pqclient/schema.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <limits>
#include <numeric>
#include <utility>

namespace pqclient {
namespace {

template <typename Integer>
constexpr Member table(std::string_view name, int count, int columns) {
  using Limits = std::numeric_limits<Integer>;
  return {name, MemberType::kNumber, Limits::min(), Limits::max(), count, columns};
}

constexpr Member number(std::string_view name, std::int64_t max) {
  return {name, MemberType::kNumber, 0, max};
}

constexpr Member text(std::string_view name, std::span<const std::string_view> choices = {}) {
  return {.name = name, .type = MemberType::kText, .choices = choices};
}
// An 8-bit number on the board, but only zero and one have a meaning.
constexpr Member flag(std::string_view name) {
  return number(name, 1);
}
constexpr Member u16(std::string_view name) {
  return number(name, 0xFFFF);
}
constexpr Member u32(std::string_view name) {
  return number(name, 0xFFFFFFFF);
}
// In the display's picture-control scale 256 is neutral. The kernel refuses values above the range,
// and nobody would see the error.
constexpr Member picture_control(std::string_view name) {
  return number(name, 511);
}

// The board treats any other text as the second one.
constexpr std::array<std::string_view, 2> kModes = {"LOW_LATENCY_MODE", "HIGH_QUALITY_MODE"};

constexpr std::array kCsc = {
    text("name"),
    flag("cscEnable"),
    text("cscMode", kModes),
    picture_control("cscBrightness"),
    picture_control("cscHue"),
    picture_control("cscContrast"),
    picture_control("cscSaturation"),
    // 32 bits in the document, but the board uses only 16; 256 is unity.
    u16("cscRGain"),
    u16("cscGGain"),
    u16("cscBGain"),
};

constexpr std::array kDci = {
    text("name"),
    flag("dciEnable"),
    flag("dciIsActive"),
    table<std::uint16_t>("dciWgtCoef_low", 33, 8),
    table<std::uint16_t>("dciWgtCoef_mid", 33, 8),
    table<std::uint16_t>("dciWgtCoef_high", 33, 8),
    table<std::uint16_t>("dciWeight_low", 32, 8),
    table<std::uint16_t>("dciWeight_mid", 32, 8),
    table<std::uint16_t>("dciWeight_high", 32, 8),
};

// Gain tables have 65 rows, one per hue, with 9 steps of luma or 13 of saturation.
constexpr std::array kAcm = {
    text("name"),
    flag("acmEnable"),
    flag("acmIsActive"),
    table<std::int16_t>("acmTableDeltaYbyH", 65, 16),
    table<std::int16_t>("acmTableDeltaHbyH", 65, 16),
    table<std::int16_t>("acmTableDeltaSbyH", 65, 16),
    table<std::int16_t>("acmTableGainYbyY", 65 * 9, 9),
    table<std::int16_t>("acmTableGainHbyY", 65 * 9, 9),
    table<std::int16_t>("acmTableGainSbyY", 65 * 9, 9),
    table<std::int16_t>("acmTableGainYbyS", 65 * 13, 13),
    table<std::int16_t>("acmTableGainHbyS", 65 * 13, 13),
    table<std::int16_t>("acmTableGainSbyS", 65 * 13, 13),
    u32("lumGain"),
    u32("hueGain"),
    u32("satGain"),
};

constexpr std::array kGamma = {
    text("name"),
    flag("gammaEnable"),
    table<std::uint16_t>("gammaTab_R", 1024, 16),
    table<std::uint16_t>("gammaTab_G", 1024, 16),
    table<std::uint16_t>("gammaTab_B", 1024, 16),
};

constexpr std::array kSharp = {
    text("name"),
    flag("sharpEnable"),
    u32("sharpPeakingGain"),
    flag("sharpEnableShootCtrl"),
    u32("sharpShootCtrlOver"),
    u32("sharpShootCtrlUnder"),
    flag("sharpEnableCoringCtrl"),
    u16("sharpCoringCtrlRatio0"),
    u16("sharpCoringCtrlRatio1"),
    u16("sharpCoringCtrlRatio2"),
    u16("sharpCoringCtrlRatio3"),
    u16("sharpCoringCtrlZero0"),
    u16("sharpCoringCtrlZero1"),
    u16("sharpCoringCtrlZero2"),
    u16("sharpCoringCtrlZero3"),
    u16("sharpCoringCtrlThrd0"),
    u16("sharpCoringCtrlThrd1"),
    u16("sharpCoringCtrlThrd2"),
    u16("sharpCoringCtrlThrd3"),
    flag("sharpEnableGainCtrl"),
    u16("sharpGainCtrlPos0"),
    u16("sharpGainCtrlPos1"),
    u16("sharpGainCtrlPos2"),
    u16("sharpGainCtrlPos3"),
    flag("sharpEnableLimitCtrl"),
    u16("sharpLimitCtrlPos00"),
    u16("sharpLimitCtrlPos01"),
    u16("sharpLimitCtrlPos02"),
    u16("sharpLimitCtrlPos03"),
    u16("sharpLimitCtrlPos10"),
    u16("sharpLimitCtrlPos11"),
    u16("sharpLimitCtrlPos12"),
    u16("sharpLimitCtrlPos13"),
    u16("sharpLimitCtrlBndPos0"),
    u16("sharpLimitCtrlBndPos1"),
    u16("sharpLimitCtrlBndPos2"),
    u16("sharpLimitCtrlBndPos3"),
    u16("sharpLimitCtrlRatio0"),
    u16("sharpLimitCtrlRatio1"),
    u16("sharpLimitCtrlRatio2"),
    u16("sharpLimitCtrlRatio3"),
    flag("AISDEnable"),
    flag("AISREnable"),
    u32("AISRFixModelIdx"),
    flag("AISRTuningEnable"),
    u32("AISRUsmGain_natural"),
    flag("AISRUsmEnableCtrl_natural"),
    u32("AISRUsmCtrlOver_natural"),
    u32("AISRUsmCtrlUnder_natural"),
    u32("AISRFusionGain_natural"),
    flag("AISRFusionEnableCtrl_natural"),
    u32("AISRFusionCtrlOver_natural"),
    u32("AISRFusionCtrlUnder_natural"),
    u32("AISRUsmGain_textual"),
    flag("AISRUsmEnableCtrl_textual"),
    u32("AISRUsmCtrlOver_textual"),
    u32("AISRUsmCtrlUnder_textual"),
    u32("AISRFusionGain_textual"),
    flag("AISRFusionEnableCtrl_textual"),
    u32("AISRFusionCtrlOver_textual"),
    u32("AISRFusionCtrlUnder_textual"),
};

constexpr std::array<Section, 5> kSections = {{
    {"csc", kCsc, false},
    {"dci", kDci, true},
    {"acm", kAcm, true},
    {"gamma", kGamma, false},
    {"sharp", kSharp, false},
}};

std::string lower_case(std::string_view name) {
  std::string lower(name);
  std::ranges::transform(lower, lower.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

// The minimum number of letters to insert, remove, replace, or swap with their neighbour.
std::size_t edit_distance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> above_last;
  std::vector<std::size_t> last(to.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= from.size(); ++i) {
    std::vector<std::size_t> row(to.size() + 1, i);
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const bool is_same = from[i - 1] == to[j - 1];
      row[j] = std::min({last[j - 1] + (is_same ? 0 : 1), last[j] + 1, row[j - 1] + 1});
      const bool is_swapped =
          i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
      if (is_swapped) row[j] = std::min(row[j], above_last[j - 2] + 1);
    }
    above_last = std::exchange(last, std::move(row));
  }
  return last.back();
}

// Smaller is nearer. Part of a name ("brightness") is nearer than any misspelling.
std::size_t name_distance(const std::string& asked, std::string_view known) {
  const std::string name = lower_case(known);
  if (asked == name) return 0;
  if (asked.size() >= 3 && name.find(asked) != std::string::npos) return 1;
  return 1 + edit_distance(asked, name);
}

}  // namespace

std::span<const Section> sections() {
  return kSections;
}

const Section* find_section(std::string_view name) {
  const auto* found = std::ranges::find(kSections, name, &Section::name);
  return found == kSections.end() ? nullptr : found;
}

const Member* find_member(const Section& section, std::string_view name) {
  const auto found = std::ranges::find(section.members, name, &Member::name);
  return found == section.members.end() ? nullptr : &*found;
}

std::vector<std::string_view> nearest_names(std::string_view asked,
                                            std::span<const std::string_view> known) {
  const std::string lower = lower_case(asked);
  std::vector<std::pair<std::size_t, std::string_view>> near;
  for (const std::string_view name : known) {
    const std::size_t distance = name_distance(lower, name);
    const std::pair entry(distance, name);
    if (distance <= 1 + lower.size() / 2 && std::ranges::find(near, entry) == near.end()) {
      near.push_back(entry);
    }
  }
  std::ranges::stable_sort(near, {}, &std::pair<std::size_t, std::string_view>::first);
  if (near.size() > 3) near.resize(3);
  std::vector<std::string_view> names(near.size());
  std::ranges::transform(near, names.begin(), [](const auto& entry) { return entry.second; });
  return names;
}

}  // namespace pqclient
