#include "qxaiq/pq_display.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>

#include "base/log.h"
#include "base/thread_annotations.h"
#include "common/drm_api.h"
#include "common/drm_lut.h"
#include "common/pq_tuning_utils.h"
#include "documents/names.h"
#include "qxaiq/change_counter.h"
#include "qxaiq/lut_files.h"

namespace pq {
namespace {

// One change at a time at the device and the engine. Not held while the screen is redrawn.
Mutex display_mutex;
LutFiles lut_files GUARDED_BY(display_mutex);

constexpr char kLowLatency[] = "LOW_LATENCY_MODE";
constexpr uint16_t kUnity = 256;

struct ColourSpace {
  uint16_t brightness = kUnity, contrast = kUnity, saturation = kUnity, hue = kUnity;
  uint16_t r_gain = kUnity, g_gain = kUnity, b_gain = kUnity;
};

// The low 16 bits of the stored numbers count.
uint16_t low_bits(uint32_t value) {
  return static_cast<uint16_t>(value);
}

void take_gains(const csc& from, ColourSpace& to) {
  to.r_gain = low_bits(from.cscRGain);
  to.g_gain = low_bits(from.cscGGain);
  to.b_gain = low_bits(from.cscBGain);
}

void take_controls(const csc& from, ColourSpace& to) {
  to.brightness = low_bits(from.cscBrightness);
  to.contrast = low_bits(from.cscContrast);
  to.saturation = low_bits(from.cscSaturation);
  to.hue = low_bits(from.cscHue);
}

void scale(std::span<uint16_t> table, uint16_t gain) {
  for (uint16_t& entry : table) {
    const uint32_t product = uint32_t{entry} * gain;
    entry = static_cast<uint16_t>(std::min<uint32_t>((product + 128) / 256, UINT16_MAX));
  }
}

void load_gamma(struct gamma& tables) REQUIRES(display_mutex) {
  constexpr auto kEntries = static_cast<unsigned>(std::extent_v<decltype(tables.gammaTab_R)>);
  DrmApi().set_3x1d_gamma(kEntries, tables.gammaTab_R, tables.gammaTab_G, tables.gammaTab_B);
}

void apply(const ColourSpace& values, struct gamma& tables) EXCLUDES(display_mutex) {
  const MutexLock lock(display_mutex);
  DrmApi().set_bcsh(values.brightness, values.contrast, values.saturation, values.hue);
  log_debug()("r_gain %d g_gain %d b_gain %d", values.r_gain, values.g_gain, values.b_gain);
  scale(tables.gammaTab_R, values.r_gain);
  scale(tables.gammaTab_G, values.g_gain);
  scale(tables.gammaTab_B, values.b_gain);
  load_gamma(tables);
}

void show_low_latency(pq_tuning_param& parameters) {
  log_debug()("LOW_LATENCY");
  PQTuningUtils::updateUI();
  ColourSpace values;
  if (parameters.csc.cscEnable != 0) {
    take_controls(parameters.csc, values);
    take_gains(parameters.csc, values);
  }
  apply(values, parameters.gamma);
}

void show_high_quality(pq_tuning_param& parameters) {
  log_debug()("HIGH_QUALITY");
  ColourSpace values;
  take_gains(parameters.csc, values);
  apply(values, parameters.gamma);
  bump(kTimelineCounter);
  PQTuningUtils::updateUI();
}

}  // namespace

void show_colour_space(pq_tuning_param& parameters) {
  const char* mode = parameters.csc.cscMode;
  if (mode != nullptr && std::strcmp(mode, kLowLatency) == 0) {
    show_low_latency(parameters);
  } else {
    show_high_quality(parameters);
  }
}

void show_lut() {
  bump(kTimelineCounter);
  log_debug()("run drm_lut_init start");
  {
    const MutexLock lock(display_mutex);
    drm_lut_init();
    drm_lut_run();
    lut_files.write_next();
    drm_lut_deinit();
  }
  log_debug()("run drm_lut_init end");
  PQTuningUtils::updateUI();
}

void show_gamma(struct gamma& tables) {
  const MutexLock lock(display_mutex);
  load_gamma(tables);
}

}  // namespace pq
