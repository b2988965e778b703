// What stands below the daemon's operations here: a log that formats its lines and drops them,
// properties in memory, the base parameters of a typical panel, and a display that takes no time.
// The linker finds these before it looks into the libraries.
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include <android/log.h>
#include <baseparameter_api.h>
#include <cutils/properties.h>

#include "baseparameter/panel_defaults.h"
#include "bench/board_platform.h"
#include "common/drm_api.h"
#include "common/drm_lut.h"
#include "common/pq_tuning_utils.h"

int __android_log_write(int /*prio*/, const char* /*tag*/, const char* /*text*/) {
  return 1;
}

int __android_log_print(int /*prio*/, const char* /*tag*/, const char* fmt, ...) {
  std::array<char, 1024> line;
  va_list arguments;
  va_start(arguments, fmt);
  std::vsnprintf(line.data(), line.size(), fmt, arguments);
  va_end(arguments);
  return 1;
}

int property_get(const char* key, char* value, const char* default_value) {
  const bool platform = std::strcmp(key, "ro.board.platform") == 0;
  const char* text = platform ? bench::kPlatform : default_value;
  return std::snprintf(value, PROPERTY_VALUE_MAX, "%s", text != nullptr ? text : "");
}

int32_t property_get_int32(const char* /*key*/, int32_t default_value) {
  return default_value;
}

int property_set(const char* /*key*/, const char* /*value*/) {
  return 0;
}

namespace {

const board::PanelDefaults& panel() {
  static const board::PanelDefaults defaults = board::panel_defaults(2, 0);
  return defaults;
}

}  // namespace

baseparameter_api::baseparameter_api() = default;
baseparameter_api::~baseparameter_api() = default;

int baseparameter_api::get_version(unsigned short* first, unsigned short* second) {
  *first = 2;
  *second = 0;
  return 0;
}

int baseparameter_api::get_pq_tuning_info(pq_tuning_info* info) {
  *info = panel().tuning;
  return 0;
}

int baseparameter_api::get_pq_sharp_info(pq_sharp_info* info) {
  *info = panel().sharp;
  return 0;
}

int baseparameter_api::get_aipq_info(aipq_info* info) {
  *info = panel().ai;
  return 0;
}

int DrmApi::get_primary_info(int*, unsigned int*, unsigned int*, unsigned int*, unsigned int*) {
  return -1;
}

int DrmApi::set_3x1d_gamma(unsigned int, unsigned short*, unsigned short*, unsigned short*) {
  return 0;
}

int DrmApi::set_bcsh(unsigned short, unsigned short, unsigned short, unsigned short) {
  return 0;
}

int drm_lut_init() {
  return 0;
}

int drm_lut_run() {
  return 0;
}

int drm_lut_save_3dlut(const char* /*path*/) {
  return 0;
}

int drm_lut_deinit() {
  return 0;
}

int PQTuningUtils::updateUI() {
  return 0;
}

int PQTuningUtils::showPattern(int /*red*/, int /*green*/, int /*blue*/) {
  return 0;
}

int PQTuningUtils::closePattern() {
  return 0;
}
