#include "documents/pq_document_creator.h"

#include <algorithm>
#include <cstdint>
#include <span>

#include <baseparameter_api.h>

#include "base/log.h"
#include "common/primary_display.h"
#include "documents/document_file.h"
#include "documents/pq_parameters.h"
#include "j2s/pq_schema.h"

namespace {

constexpr uint32_t kStoredHighQuality = 0;
constexpr uint32_t kStoredLowLatency = 1;

struct StoreVersion {
  uint16_t first = 0, second = 0;

  // Stores of this version keep the ACM tables as unsigned numbers, one row for all hues.
  [[nodiscard]] bool has_unsigned_acm() const { return first == 2 && second == 0; }
};

struct BaseParameters {
  StoreVersion version;
  pq_tuning_info tuning{};
  pq_sharp_info sharp{};
  aipq_info ai{};
};

// Values that the store lacks stay zero.
BaseParameters read_base_parameters(baseparameter_api& store) {
  BaseParameters records;
  store.get_version(&records.version.first, &records.version.second);
  store.get_pq_tuning_info(&records.tuning);
  store.get_pq_sharp_info(&records.sharp);
  store.get_aipq_info(&records.ai);
  return records;
}

// The tables differ in name only.
template <typename Table>
void copy_table(Table& to, const Table& from) {
  std::copy(std::begin(from), std::end(from), std::begin(to));
}

// The record points at constant texts: it is printed once, and must never be loaded into or freed.
char* mode_text(uint32_t stored_mode) {
  static constexpr char kLowLatency[] = "LOW_LATENCY_MODE";
  static constexpr char kHighQuality[] = "HIGH_QUALITY_MODE";
  if (stored_mode == kStoredLowLatency) return const_cast<char*>(kLowLatency);
  if (stored_mode == kStoredHighQuality) return const_cast<char*>(kHighQuality);
  return nullptr;
}

// By meaning: the store and the document have the four controls in different orders.
void fill_csc(const pq_tuning_info& from, csc& to) {
  to.cscEnable = static_cast<int8_t>(from.csc_enable);
  to.cscMode = mode_text(from.csc_mode);
  to.cscBrightness = from.csc_brightness;
  to.cscHue = from.csc_hue;
  to.cscContrast = from.csc_contrast;
  to.cscSaturation = from.csc_saturation;
  to.cscRGain = from.csc_r_gain;
  to.cscGGain = from.csc_g_gain;
  to.cscBGain = from.csc_b_gain;
}

void fill_dci(const pq_tuning_info& from, dci& to) {
  to.dciEnable = static_cast<int8_t>(from.dci_enable);
  copy_table(to.dciWgtCoef_low, from.dci_wgt_coef_low);
  copy_table(to.dciWgtCoef_mid, from.dci_wgt_coef_mid);
  copy_table(to.dciWgtCoef_high, from.dci_wgt_coef_high);
  copy_table(to.dciWeight_low, from.dci_weight_low);
  copy_table(to.dciWeight_mid, from.dci_weight_mid);
  copy_table(to.dciWeight_high, from.dci_weight_high);
}

// From 0..256 with 128 in the middle to -255..255.
void convert_signed_delta(std::span<int16_t> to, std::span<const int16_t> from) {
  std::transform(from.begin(), from.end(), to.begin(), [](int value) {
    return static_cast<int16_t>(std::clamp(2 * value - 256, -255, 255));
  });
}

// From 0..128 with 64 in the middle to -63..63.
void convert_hue_delta(std::span<int16_t> to, std::span<const int16_t> from) {
  std::transform(from.begin(), from.end(), to.begin(),
                 [](int value) { return static_cast<int16_t>(std::clamp(value - 64, -63, 63)); });
}

// The first row serves all hues.
void spread_gain_row(std::span<int16_t> to, std::span<const int16_t> from) {
  constexpr size_t kHues = std::extent_v<decltype(acm::acmTableDeltaYbyH)>;
  const auto size = static_cast<size_t>(to.size());  // signed in Android's standard library
  const size_t row_length = size / kHues;
  for (size_t i = 0; i < size; ++i) {
    to[i] = std::clamp<int16_t>(from[i % row_length], 0, 127);
  }
}

void convert_acm_tables(const pq_tuning_info& from, acm& to) {
  convert_signed_delta(to.acmTableDeltaYbyH, from.acm_table_delta_y_by_h);
  convert_hue_delta(to.acmTableDeltaHbyH, from.acm_table_delta_h_by_h);
  convert_signed_delta(to.acmTableDeltaSbyH, from.acm_table_delta_s_by_h);
  spread_gain_row(to.acmTableGainYbyY, from.acm_table_gain_y_by_y);
  spread_gain_row(to.acmTableGainHbyY, from.acm_table_gain_h_by_y);
  spread_gain_row(to.acmTableGainSbyY, from.acm_table_gain_s_by_y);
  spread_gain_row(to.acmTableGainYbyS, from.acm_table_gain_y_by_s);
  spread_gain_row(to.acmTableGainHbyS, from.acm_table_gain_h_by_s);
  spread_gain_row(to.acmTableGainSbyS, from.acm_table_gain_s_by_s);
}

void copy_acm_tables(const pq_tuning_info& from, acm& to) {
  copy_table(to.acmTableDeltaYbyH, from.acm_table_delta_y_by_h);
  copy_table(to.acmTableDeltaHbyH, from.acm_table_delta_h_by_h);
  copy_table(to.acmTableDeltaSbyH, from.acm_table_delta_s_by_h);
  copy_table(to.acmTableGainYbyY, from.acm_table_gain_y_by_y);
  copy_table(to.acmTableGainHbyY, from.acm_table_gain_h_by_y);
  copy_table(to.acmTableGainSbyY, from.acm_table_gain_s_by_y);
  copy_table(to.acmTableGainYbyS, from.acm_table_gain_y_by_s);
  copy_table(to.acmTableGainHbyS, from.acm_table_gain_h_by_s);
  copy_table(to.acmTableGainSbyS, from.acm_table_gain_s_by_s);
}

void fill_acm(const StoreVersion& version, const pq_tuning_info& from, acm& to) {
  to.acmEnable = static_cast<int8_t>(from.acm_enable);
  to.lumGain = from.lum_gain;
  to.hueGain = from.hue_gain;
  to.satGain = from.sat_gain;
  if (version.has_unsigned_acm()) {
    convert_acm_tables(from, to);
  } else {
    copy_acm_tables(from, to);
  }
}

void fill_gamma(const pq_tuning_info& from, struct gamma& to) {
  to.gammaEnable = 1;  // the store's own switch does not count
  copy_table(to.gammaTab_R, from.gamma_tab_r);
  copy_table(to.gammaTab_G, from.gamma_tab_g);
  copy_table(to.gammaTab_B, from.gamma_tab_b);
}

void fill_sharp(const pq_sharp_info& from, sharp& to) {
  to.sharpEnable = static_cast<int8_t>(from.enable);
  to.sharpPeakingGain = from.peaking_gain;
  to.sharpEnableShootCtrl = static_cast<int8_t>(from.enable_shoot_ctrl);
  to.sharpShootCtrlOver = from.shoot_ctrl_over;
  to.sharpShootCtrlUnder = from.shoot_ctrl_under;
  to.sharpEnableCoringCtrl = static_cast<int8_t>(from.enable_coring_ctrl);
  to.sharpCoringCtrlRatio0 = from.coring_ctrl_ratio[0];
  to.sharpCoringCtrlRatio1 = from.coring_ctrl_ratio[1];
  to.sharpCoringCtrlRatio2 = from.coring_ctrl_ratio[2];
  to.sharpCoringCtrlRatio3 = from.coring_ctrl_ratio[3];
  to.sharpCoringCtrlZero0 = from.coring_ctrl_zero[0];
  to.sharpCoringCtrlZero1 = from.coring_ctrl_zero[1];
  to.sharpCoringCtrlZero2 = from.coring_ctrl_zero[2];
  to.sharpCoringCtrlZero3 = from.coring_ctrl_zero[3];
  to.sharpCoringCtrlThrd0 = from.coring_ctrl_thrd[0];
  to.sharpCoringCtrlThrd1 = from.coring_ctrl_thrd[1];
  to.sharpCoringCtrlThrd2 = from.coring_ctrl_thrd[2];
  to.sharpCoringCtrlThrd3 = from.coring_ctrl_thrd[3];
  to.sharpEnableGainCtrl = static_cast<int8_t>(from.enable_gain_ctrl);
  to.sharpGainCtrlPos0 = from.gain_ctrl_pos[0];
  to.sharpGainCtrlPos1 = from.gain_ctrl_pos[1];
  to.sharpGainCtrlPos2 = from.gain_ctrl_pos[2];
  to.sharpGainCtrlPos3 = from.gain_ctrl_pos[3];
  to.sharpEnableLimitCtrl = static_cast<int8_t>(from.enable_limit_ctrl);
  to.sharpLimitCtrlPos00 = from.limit_ctrl_pos0[0];
  to.sharpLimitCtrlPos01 = from.limit_ctrl_pos0[1];
  to.sharpLimitCtrlPos02 = from.limit_ctrl_pos0[2];
  to.sharpLimitCtrlPos03 = from.limit_ctrl_pos0[3];
  to.sharpLimitCtrlPos10 = from.limit_ctrl_pos1[0];
  to.sharpLimitCtrlPos11 = from.limit_ctrl_pos1[1];
  to.sharpLimitCtrlPos12 = from.limit_ctrl_pos1[2];
  to.sharpLimitCtrlPos13 = from.limit_ctrl_pos1[3];
  to.sharpLimitCtrlBndPos0 = from.limit_ctrl_bnd_pos[0];
  to.sharpLimitCtrlBndPos1 = from.limit_ctrl_bnd_pos[1];
  to.sharpLimitCtrlBndPos2 = from.limit_ctrl_bnd_pos[2];
  to.sharpLimitCtrlBndPos3 = from.limit_ctrl_bnd_pos[3];
  to.sharpLimitCtrlRatio0 = from.limit_ctrl_ratio[0];
  to.sharpLimitCtrlRatio1 = from.limit_ctrl_ratio[1];
  to.sharpLimitCtrlRatio2 = from.limit_ctrl_ratio[2];
  to.sharpLimitCtrlRatio3 = from.limit_ctrl_ratio[3];
}

// The AI stages are part of the sharpening section.
void fill_ai(const aipq_info& from, sharp& to) {
  to.AISDEnable = static_cast<int8_t>(from.aisd_enable);
  to.AISREnable = static_cast<int8_t>(from.aisr_enable);
  to.AISRFixModelIdx = from.aisr_fix_model_idx;
  to.AISRTuningEnable = static_cast<int8_t>(from.aisr_tuning_enable);
  to.AISRUsmGain_natural = from.natural.usm_gain;
  to.AISRUsmEnableCtrl_natural = static_cast<int8_t>(from.natural.usm_enable_ctrl);
  to.AISRUsmCtrlOver_natural = from.natural.usm_ctrl_over;
  to.AISRUsmCtrlUnder_natural = from.natural.usm_ctrl_under;
  to.AISRFusionGain_natural = from.natural.fusion_gain;
  to.AISRFusionEnableCtrl_natural = static_cast<int8_t>(from.natural.fusion_enable_ctrl);
  to.AISRFusionCtrlOver_natural = from.natural.fusion_ctrl_over;
  to.AISRFusionCtrlUnder_natural = from.natural.fusion_ctrl_under;
  to.AISRUsmGain_textual = from.textual.usm_gain;
  to.AISRUsmEnableCtrl_textual = static_cast<int8_t>(from.textual.usm_enable_ctrl);
  to.AISRUsmCtrlOver_textual = from.textual.usm_ctrl_over;
  to.AISRUsmCtrlUnder_textual = from.textual.usm_ctrl_under;
  to.AISRFusionGain_textual = from.textual.fusion_gain;
  to.AISRFusionEnableCtrl_textual = static_cast<int8_t>(from.textual.fusion_enable_ctrl);
  to.AISRFusionCtrlOver_textual = from.textual.fusion_ctrl_over;
  to.AISRFusionCtrlUnder_textual = from.textual.fusion_ctrl_under;
}

pq_tuning_param make_parameters(const BaseParameters& records) {
  pq_tuning_param parameters{};
  fill_csc(records.tuning, parameters.csc);
  fill_dci(records.tuning, parameters.dci);
  fill_acm(records.version, records.tuning, parameters.acm);
  fill_gamma(records.tuning, parameters.gamma);
  fill_sharp(records.sharp, parameters.sharp);
  fill_ai(records.ai, parameters.sharp);
  return parameters;
}

void log_primary_display() {
  const auto display = pq::open_primary_display();
  pq::log_debug()("get_primary_info ret %d type %u id %u", display ? 0 : -1,
                  display ? display->connector_type : 0, display ? display->connector_type_id : 0);
}

}  // namespace

int getJsonFromBaseparameter(char* path) {
  // Released at the end: the library keeps its store open as long as the object lives.
  baseparameter_api store;
  const pq_tuning_param parameters = make_parameters(read_base_parameters(store));
  log_primary_display();
  pq::J2sContext context;
  const int saved = pq::save_document(path, pq::print_pq_document(context.get(), parameters).get());
  pq::log_debug()("j2s_save_file ret %d ", saved);
  return 0;
}
