#include "baseparameter/panel_defaults.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <numbers>

namespace board {
namespace {

constexpr size_t kGammaEntries = 1024;

// The red, green and blue subpixels' own responses. The tables bring each to a gamma of 2.2, and
// the peaks of green and blue down to the white point.
constexpr double kTargetGamma = 2.2;
constexpr double kNativeGammaRed = 2.35, kNativeGammaGreen = 2.28, kNativeGammaBlue = 2.12;
constexpr double kPeakRed = 65535, kPeakGreen = 64880, kPeakBlue = 63225;

constexpr double kFullCurve = 1023;  // full scale of the DCI curves
constexpr size_t kCurvePoints = 33;
constexpr size_t kWeights = 32;

constexpr size_t kHueRows = 65;
constexpr size_t kLumaColumns = 9;         // of the gain tables by luma
constexpr size_t kSaturationColumns = 13;  // of those by saturation

uint16_t rounded(double value) {
  return static_cast<uint16_t>(std::lround(value));
}

double part_of(size_t index, size_t count) {
  return static_cast<double>(index) / static_cast<double>(count - 1);
}

uint16_t gamma_entry(size_t index, double native_gamma, double peak) {
  return rounded(peak * std::pow(part_of(index, kGammaEntries), kTargetGamma / native_gamma));
}

// The S-shape of a contrast curve: darker below the middle, brighter above.
double s_curve(double input) {
  return input - 0.06 * std::sin(2 * std::numbers::pi * input);
}

// The weight of a curve at a luma step: `height` at `middle`, nothing `reach` steps away.
uint16_t weight(size_t step, int middle, int reach, int height) {
  const int distance = std::abs(static_cast<int>(step) - middle);
  return static_cast<uint16_t>(height * std::max(reach - distance, 0) / reach);
}

// The panel leans one way on one side of the colour circle and the other way on the other.
int16_t delta(size_t hue_row, int middle, double amplitude, double phase) {
  const double hue = 2 * std::numbers::pi * (part_of(hue_row, kHueRows) + phase);
  return static_cast<int16_t>(middle + std::lround(amplitude * std::sin(hue)));
}

// Only the first row of a raw gain table counts; the others hold something else on purpose.
template <size_t Columns>
int16_t raw_gain(const int16_t (&first_row)[Columns], size_t index) {
  return index < Columns ? first_row[index] : static_cast<int16_t>(30 + index % 7);
}

int16_t signed_gain(size_t index, size_t first, size_t period) {
  return static_cast<int16_t>(first + index % period);
}

constexpr int16_t kRawGainYbyY[kLumaColumns] = {96, 112, 127, 140, 127, 118, 104, 90, -3};
constexpr int16_t kRawGainHbyY[kLumaColumns] = {60, 72, 84, 96, 108, 120, 132, 99, 66};
constexpr int16_t kRawGainSbyY[kLumaColumns] = {-8, 40, 64, 88, 127, 128, 101, 75, 50};
constexpr int16_t kRawGainYbyS[kSaturationColumns] = {0,   16,  33,  49,  66, 82, 98,
                                                      115, 131, 120, 109, 97, 86};
constexpr int16_t kRawGainHbyS[kSaturationColumns] = {-1, 11, 22,  34,  45,  57, 68,
                                                      80, 91, 103, 114, 126, 200};
constexpr int16_t kRawGainSbyS[kSaturationColumns] = {127, 121, 113, 107, 95, 89, 77,
                                                      71,  59,  53,  41,  35, 23};

void fill_raw_acm(pq_tuning_info& tuning) {
  for (size_t row = 0; row < kHueRows; ++row) {
    tuning.acm_table_delta_y_by_h[row] = delta(row, 128, 12, 0.0);
    tuning.acm_table_delta_h_by_h[row] = delta(row, 64, 9, 0.25);
    tuning.acm_table_delta_s_by_h[row] = delta(row, 128, 30, 0.5);
  }
  // A few codes at the ends of the range and beyond it, as found on boards.
  tuning.acm_table_delta_y_by_h[3] = 0;
  tuning.acm_table_delta_y_by_h[60] = 300;
  tuning.acm_table_delta_h_by_h[5] = -2;
  tuning.acm_table_delta_h_by_h[61] = 130;
  tuning.acm_table_delta_s_by_h[7] = -16;
  tuning.acm_table_delta_s_by_h[62] = 255;
  for (size_t i = 0; i < kHueRows * kLumaColumns; ++i) {
    tuning.acm_table_gain_y_by_y[i] = raw_gain(kRawGainYbyY, i);
    tuning.acm_table_gain_h_by_y[i] = raw_gain(kRawGainHbyY, i);
    tuning.acm_table_gain_s_by_y[i] = raw_gain(kRawGainSbyY, i);
  }
  for (size_t i = 0; i < kHueRows * kSaturationColumns; ++i) {
    tuning.acm_table_gain_y_by_s[i] = raw_gain(kRawGainYbyS, i);
    tuning.acm_table_gain_h_by_s[i] = raw_gain(kRawGainHbyS, i);
    tuning.acm_table_gain_s_by_s[i] = raw_gain(kRawGainSbyS, i);
  }
}

void fill_signed_acm(pq_tuning_info& tuning) {
  for (size_t row = 0; row < kHueRows; ++row) {
    tuning.acm_table_delta_y_by_h[row] = delta(row, 3, 20, 0.0);
    tuning.acm_table_delta_h_by_h[row] = delta(row, -2, 12, 0.25);
    tuning.acm_table_delta_s_by_h[row] = delta(row, 5, 48, 0.5);
  }
  for (size_t i = 0; i < kHueRows * kLumaColumns; ++i) {
    tuning.acm_table_gain_y_by_y[i] = signed_gain(i, 70, 51);
    tuning.acm_table_gain_h_by_y[i] = signed_gain(i, 60, 47);
    tuning.acm_table_gain_s_by_y[i] = signed_gain(i, 50, 43);
  }
  for (size_t i = 0; i < kHueRows * kSaturationColumns; ++i) {
    tuning.acm_table_gain_y_by_s[i] = signed_gain(i, 40, 41);
    tuning.acm_table_gain_h_by_s[i] = signed_gain(i, 30, 37);
    tuning.acm_table_gain_s_by_s[i] = signed_gain(i, 20, 31);
  }
}

void fill_csc(pq_tuning_info& tuning) {
  tuning.csc_enable = 1;
  tuning.csc_mode = 1;
  tuning.csc_brightness = 256;
  tuning.csc_contrast = 260;
  tuning.csc_saturation = 268;
  tuning.csc_hue = 252;
  tuning.csc_r_gain = 255;
  tuning.csc_g_gain = 250;
  tuning.csc_b_gain = 243;
}

// A low curve that lifts the shadows, a middle one that adds contrast, a high one that keeps
// highlights apart, each weighted where its part of the luma range is.
void fill_dci(pq_tuning_info& tuning) {
  tuning.dci_enable = 1;
  for (size_t i = 0; i < kCurvePoints; ++i) {
    const double input = part_of(i, kCurvePoints);
    tuning.dci_wgt_coef_low[i] = rounded(997 * std::pow(input, 0.72));
    tuning.dci_wgt_coef_mid[i] = rounded(kFullCurve * s_curve(input));
    tuning.dci_wgt_coef_high[i] = rounded(kFullCurve * std::pow(input, 1.45));
  }
  for (size_t i = 0; i < kWeights; ++i) {
    tuning.dci_weight_low[i] = weight(i, 2, 11, 16);
    tuning.dci_weight_mid[i] = weight(i, 15, 14, 18);
    tuning.dci_weight_high[i] = weight(i, 29, 13, 17);
  }
}

void fill_gamma(pq_tuning_info& tuning) {
  for (size_t i = 0; i < kGammaEntries; ++i) {
    tuning.gamma_tab_r[i] = gamma_entry(i, kNativeGammaRed, kPeakRed);
    tuning.gamma_tab_g[i] = gamma_entry(i, kNativeGammaGreen, kPeakGreen);
    tuning.gamma_tab_b[i] = gamma_entry(i, kNativeGammaBlue, kPeakBlue);
  }
}

pq_tuning_info default_tuning(bool raw_acm) {
  pq_tuning_info tuning{};
  fill_csc(tuning);
  fill_dci(tuning);
  tuning.acm_enable = 1;
  if (raw_acm) {
    fill_raw_acm(tuning);
  } else {
    fill_signed_acm(tuning);
  }
  tuning.lum_gain = 1010;
  tuning.hue_gain = 1000;
  tuning.sat_gain = 1020;
  fill_gamma(tuning);
  return tuning;
}

pq_sharp_info default_sharp() {
  pq_sharp_info sharp{};
  sharp.enable = 1;
  sharp.peaking_gain = 196;
  sharp.enable_shoot_ctrl = 1;
  sharp.shoot_ctrl_over = 48;
  sharp.shoot_ctrl_under = 56;
  sharp.enable_coring_ctrl = 1;
  sharp.enable_gain_ctrl = 1;
  sharp.enable_limit_ctrl = 1;
  for (uint16_t band = 0; band < 4; ++band) {
    const auto step = [band](int first, int distance) {
      return static_cast<uint16_t>(first + distance * band);
    };
    sharp.coring_ctrl_ratio[band] = step(1536, -128);
    sharp.coring_ctrl_zero[band] = step(4, 2);
    sharp.coring_ctrl_thrd[band] = step(51, 4);
    sharp.gain_ctrl_pos[band] = step(1600, 64);
    sharp.limit_ctrl_pos0[band] = step(64, 4);
    sharp.limit_ctrl_pos1[band] = step(128, 8);
    sharp.limit_ctrl_bnd_pos[band] = step(81, 14);
    sharp.limit_ctrl_ratio[band] = step(161, 16);
  }
  return sharp;
}

aipq_info default_ai() {
  aipq_info ai{};
  ai.aisd_enable = 1;
  ai.aisr_enable = 1;
  ai.aisr_fix_model_idx = 2;
  ai.aisr_tuning_enable = 1;
  ai.natural = {.usm_gain = 310,
                .usm_enable_ctrl = 1,
                .usm_enable_ctrl_unused = {},
                .usm_ctrl_over = 31,
                .usm_ctrl_under = 33,
                .fusion_gain = 320,
                .fusion_enable_ctrl = 1,
                .fusion_enable_ctrl_unused = {},
                .fusion_ctrl_over = 35,
                .fusion_ctrl_under = 37};
  ai.textual = {.usm_gain = 410,
                .usm_enable_ctrl = 1,
                .usm_enable_ctrl_unused = {},
                .usm_ctrl_over = 41,
                .usm_ctrl_under = 43,
                .fusion_gain = 420,
                .fusion_enable_ctrl = 1,
                .fusion_enable_ctrl_unused = {},
                .fusion_ctrl_over = 45,
                .fusion_ctrl_under = 47};
  return ai;
}

}  // namespace

PanelDefaults panel_defaults(uint16_t major_version, uint16_t minor_version) {
  const bool raw_acm = major_version == 2 && minor_version == 0;
  return {{major_version, minor_version}, default_tuning(raw_acm), default_sharp(), default_ai()};
}

}  // namespace board
