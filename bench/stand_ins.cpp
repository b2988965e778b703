// Replaces the display of the daemon's operations by one that takes no time. The linker prefers
// these definitions to the libraries'; board/in_process is the rest of the board.
#include "common/drm_api.h"
#include "common/drm_lut.h"
#include "common/pq_tuning_utils.h"

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
