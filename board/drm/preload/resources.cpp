// Requests that tell what hardware there is: CRTCs, encoders, connectors.
#include <cerrno>
#include <cstring>
#include <initializer_list>
#include <vector>

#include "drm/preload/caller_memory.h"
#include "drm/preload/property_list.h"
#include "drm/preload/requests.h"
#include "drm/properties.h"

namespace board::drm {
namespace {

constexpr uint32_t kSmallestSize = 4;
constexpr uint32_t kLargestSize = 8192;
constexpr uint32_t kConnected = 1;  // as libdrm's DRM_MODE_CONNECTED; the kernel's enum is internal
constexpr uint32_t kDisconnected = 2;

template <typename List>
std::vector<uint32_t> ids_of(const List& objects) {
  std::vector<uint32_t> ids;
  ids.reserve(objects.size());
  for (const auto& object : objects)
    ids.push_back(object.id);
  return ids;
}

int first_error(std::initializer_list<int> results) {
  for (const int result : results) {
    if (result < 0) return result;
  }
  return 0;
}

bool read_mode(const DeviceState& state, const Crtc& crtc, drm_mode_modeinfo& mode) {
  const Blob* blob = state.find_blob(static_cast<uint32_t>(crtc.properties.value(kModeId)));
  if (blob == nullptr || blob->data.size() != sizeof(mode)) return false;
  std::memcpy(&mode, blob->data.data(), sizeof(mode));
  return true;
}

}  // namespace

int get_resources(Call& call, drm_mode_card_res& resources) {
  resources.count_fbs = 0;
  resources.min_width = resources.min_height = kSmallestSize;
  resources.max_width = resources.max_height = kLargestSize;
  return first_error(
      {copy_what_fits(resources.crtc_id_ptr, resources.count_crtcs, ids_of(call.state.crtcs)),
       copy_what_fits(resources.connector_id_ptr, resources.count_connectors,
                      ids_of(call.state.connectors)),
       copy_what_fits(resources.encoder_id_ptr, resources.count_encoders,
                      ids_of(call.state.encoders))});
}

int get_plane_resources(Call& /*call*/, drm_mode_get_plane_res& resources) {
  resources.count_planes = 0;
  return 0;
}

int get_crtc(Call& call, drm_mode_crtc& crtc) {
  const Crtc* found = call.state.find_crtc(crtc.crtc_id);
  if (found == nullptr) return -ENOENT;
  crtc.x = crtc.y = crtc.fb_id = 0;
  crtc.gamma_size = 0;
  crtc.mode_valid = read_mode(call.state, *found, crtc.mode) ? 1 : 0;
  return 0;
}

int get_encoder(Call& call, drm_mode_get_encoder& encoder) {
  const Encoder* found = call.state.find_encoder(encoder.encoder_id);
  if (found == nullptr) return -ENOENT;
  encoder.encoder_type = found->type;
  encoder.crtc_id = call.state.crtc_of_encoder(found->id);
  encoder.possible_crtcs = found->possible_crtcs;
  encoder.possible_clones = 0;
  return 0;
}

int get_connector(Call& call, drm_mode_get_connector& connector) {
  const Connector* found = call.state.find_connector(connector.connector_id);
  if (found == nullptr) return -ENOENT;

  std::vector<uint32_t> encoders;
  if (found->encoder_id != 0) encoders.push_back(found->encoder_id);
  const auto crtc_id = static_cast<uint32_t>(found->properties.value(kCrtcId));
  std::vector<drm_mode_modeinfo> modes;
  drm_mode_modeinfo mode = {};
  const Crtc* crtc = call.state.find_crtc(crtc_id);
  if (crtc != nullptr && read_mode(call.state, *crtc, mode)) modes.push_back(mode);

  connector.connector_type = found->type;
  connector.connector_type_id = found->type_id;
  connector.connection = found->connected != 0 ? kConnected : kDisconnected;
  connector.encoder_id = crtc_id != 0 ? found->encoder_id : 0;
  connector.mm_width = connector.mm_height = 0;
  connector.subpixel = 0;
  return first_error({copy_if_all_fit(connector.modes_ptr, connector.count_modes, modes),
                      copy_properties(found->properties, call.file, connector.count_props,
                                      connector.props_ptr, connector.prop_values_ptr),
                      copy_if_all_fit(connector.encoders_ptr, connector.count_encoders, encoders)});
}

// A driver without the table of old, as GETCRTC's gamma_size of 0 says; GAMMA_LUT is the way.
int legacy_gamma(Call& call, drm_mode_crtc_lut& lut) {
  return call.state.find_crtc(lut.crtc_id) == nullptr ? -ENOENT : -ENOSYS;
}

}  // namespace board::drm
