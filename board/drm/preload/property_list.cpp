#include "drm/preload/property_list.h"

#include <drm.h>
#include <drm_mode.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <vector>

#include "drm/preload/caller_memory.h"

namespace board::drm {
namespace {

bool is_possible(DeviceState& state, const Property& property, uint64_t value) {
  if (property.is_immutable()) return false;
  if ((property.flags & DRM_MODE_PROP_RANGE) != 0) {
    return value >= property.values[0] && value <= property.values[1];
  }
  if ((property.flags & DRM_MODE_PROP_ENUM) != 0) {
    return std::ranges::find(property.values, value) != property.values.end();
  }
  if (value == 0) return true;  // no object, no blob
  if (value > UINT32_MAX) return false;
  const auto id = static_cast<uint32_t>(value);
  if (property.is_blob()) return state.find_blob(id) != nullptr;
  return find_object(state, id, static_cast<uint32_t>(property.values[0])).type != 0;
}

// In bytes; 0: any size goes.
size_t wanted_blob_size(const DeviceState& state, uint32_t property_id) {
  switch (property_id) {
    case kModeId:
      return sizeof(drm_mode_modeinfo);
    case kCtm:
      return sizeof(drm_color_ctm);
    case kDegammaLut:
      return kDegammaEntries * sizeof(drm_color_lut);
    case kGammaLut:
      return state.settings.gamma_lut_size * sizeof(drm_color_lut);
    default:
      return 0;
  }
}

bool may_feed(const DeviceState& state, const Crtc& crtc, const Connector& connector) {
  const auto index = static_cast<size_t>(&crtc - state.crtcs.data());
  const auto encoder = std::ranges::find(state.encoders, connector.encoder_id, &Encoder::id);
  return encoder != state.encoders.end() && (encoder->possible_crtcs >> index & 1) != 0;
}

}  // namespace

ObjectReference find_object(DeviceState& state, uint32_t id, uint32_t type) {
  ObjectReference found;
  if (Crtc* crtc = state.find_crtc(id)) {
    found = {id, DRM_MODE_OBJECT_CRTC, &crtc->properties};
  } else if (Connector* connector = state.find_connector(id)) {
    found = {id, DRM_MODE_OBJECT_CONNECTOR, &connector->properties};
  } else if (state.find_encoder(id) != nullptr) {
    found = {id, DRM_MODE_OBJECT_ENCODER, nullptr};
  } else if (state.find_blob(id) != nullptr) {
    found = {id, DRM_MODE_OBJECT_BLOB, nullptr};
  } else if (find_property(id) != nullptr) {
    found = {id, DRM_MODE_OBJECT_PROPERTY, nullptr};
  }
  return type == DRM_MODE_OBJECT_ANY || type == found.type ? found : ObjectReference{};
}

int copy_properties(const PropertyList& properties, const OpenFile& file, uint32_t& count,
                    uint64_t ids_address, uint64_t values_address) {
  std::vector<uint32_t> ids;
  std::vector<uint64_t> values;
  for (size_t i = 0; i < properties.ids.size(); ++i) {
    if (file.atomic == 0 && find_property(properties.ids[i])->is_atomic_only()) continue;
    ids.push_back(properties.ids[i]);
    values.push_back(properties.values[i]);
  }
  uint32_t count_of_values = count;
  const int result = copy_what_fits(values_address, count_of_values, values);
  return result < 0 ? result : copy_what_fits(ids_address, count, ids);
}

int set_property(DeviceState& state, const ObjectReference& object, const Property& property,
                 uint64_t value) {
  if (!is_possible(state, property, value)) return -EINVAL;
  if (property.is_blob() && value != 0) {
    const size_t size = state.find_blob(static_cast<uint32_t>(value))->data.size();
    const size_t wanted = wanted_blob_size(state, property.id);
    if (wanted != 0 && size != wanted) return -EINVAL;
  }
  *object.properties->find(property.id) = value;
  return 0;
}

int check_routing(const DeviceState& state) {
  for (const Crtc& crtc : state.crtcs) {
    bool has_connector = false;
    for (const Connector& connector : state.connectors) {
      if (connector.properties.value(kCrtcId) != crtc.id) continue;
      if (!may_feed(state, crtc, connector)) return -EINVAL;
      has_connector = true;
    }
    const bool has_mode = crtc.properties.value(kModeId) != 0;
    const bool active = crtc.properties.value(kActive) != 0;
    if (has_mode != has_connector || (active && !has_mode)) return -EINVAL;
  }
  return 0;
}

}  // namespace board::drm
