// libbaseparameter: gives what it was filled with, and takes settings without keeping them.
#include <baseparameter_api.h>

#include "in_process/platform.h"

namespace {

const board::PanelDefaults& stored = in_process::platform.parameters;

int answer() {
  return in_process::platform.fails(in_process::Call::kParameters) ? -1 : 0;
}

template <typename Record>
int give(const Record& from, Record* to) {
  const int result = answer();
  if (result == 0) *to = from;
  return result;
}

}  // namespace

baseparameter_api::baseparameter_api() = default;
baseparameter_api::~baseparameter_api() = default;

int baseparameter_api::get_version(unsigned short* first, unsigned short* second) {
  const int result = answer();
  if (result == 0) {
    *first = stored.version[0];
    *second = stored.version[1];
  }
  return result;
}
int baseparameter_api::get_pq_tuning_info(pq_tuning_info* info) {
  return give(stored.tuning, info);
}
int baseparameter_api::get_pq_sharp_info(pq_sharp_info* info) {
  return give(stored.sharp, info);
}
int baseparameter_api::get_aipq_info(aipq_info* info) {
  return give(stored.ai, info);
}
int baseparameter_api::set_brightness(unsigned /*type*/, unsigned /*index*/, unsigned short) {
  return answer();
}
int baseparameter_api::set_contrast(unsigned /*type*/, unsigned /*index*/, unsigned short) {
  return answer();
}
int baseparameter_api::set_saturation(unsigned /*type*/, unsigned /*index*/, unsigned short) {
  return answer();
}
int baseparameter_api::set_hue(unsigned /*type*/, unsigned /*index*/, unsigned short) {
  return answer();
}
int baseparameter_api::set_cubic_lut_data(unsigned /*type*/, unsigned /*index*/,
                                          cubic_lut_data* table) {
  return table->size == 0 ? -1 : answer();
}
