// libbaseparameter.so of the simulated board: the display's base parameters in files.
#include <baseparameter_api.h>

#include <cerrno>
#include <span>

#include "baseparameter/parameter_store.h"
#include "description/description.h"

namespace {

board::ParameterStore store() {
  return board::ParameterStore(board::board_folder() / "baseparameter");
}

template <typename Record>
int read_record(const char* name, Record* record) {
  if (record == nullptr) return -EINVAL;
  return store().read_record(name, std::as_writable_bytes(std::span(record, 1)));
}

}  // namespace

// The library's members stay unused: everything is in the files.
baseparameter_api::baseparameter_api() = default;
baseparameter_api::~baseparameter_api() = default;

int baseparameter_api::get_version(unsigned short* first, unsigned short* second) {
  if (first == nullptr || second == nullptr) return -EINVAL;
  const auto version = store().version();
  if (!version) return -ENOENT;
  *first = version->first;
  *second = version->second;
  return 0;
}

int baseparameter_api::get_pq_tuning_info(pq_tuning_info* info) {
  return read_record("pq_tuning_info", info);
}

int baseparameter_api::get_pq_sharp_info(pq_sharp_info* info) {
  return read_record("pq_sharp_info", info);
}

int baseparameter_api::get_aipq_info(aipq_info* info) {
  return read_record("aipq_info", info);
}

int baseparameter_api::set_brightness(unsigned int connector_type, unsigned int connector_index,
                                      unsigned short value) {
  return store().set_value(connector_type, connector_index, "brightness", value);
}

int baseparameter_api::set_contrast(unsigned int connector_type, unsigned int connector_index,
                                    unsigned short value) {
  return store().set_value(connector_type, connector_index, "contrast", value);
}

int baseparameter_api::set_saturation(unsigned int connector_type, unsigned int connector_index,
                                      unsigned short value) {
  return store().set_value(connector_type, connector_index, "saturation", value);
}

int baseparameter_api::set_hue(unsigned int connector_type, unsigned int connector_index,
                               unsigned short value) {
  return store().set_value(connector_type, connector_index, "hue", value);
}

int baseparameter_api::set_cubic_lut_data(unsigned int connector_type, unsigned int connector_index,
                                          cubic_lut_data* data) {
  if (data == nullptr) return -EINVAL;
  return store().set_cubic_lut(connector_type, connector_index, *data);
}
