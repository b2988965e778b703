// Requests that tell what hardware there is, and its properties.
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <vector>

#include "drm/preload/caller_memory.h"
#include "drm/preload/requests.h"
#include "drm/properties.h"

namespace board::drm {
namespace {

constexpr uint32_t kMinSize = 4;
constexpr uint32_t kMaxSize = 8192;
constexpr uint32_t kConnected = 1;  // as libdrm's DRM_MODE_CONNECTED; the kernel's enum is internal
constexpr uint32_t kDisconnected = 2;

int first_error(std::initializer_list<int> results) {
  for (const int result : results) {
    if (result < 0) return result;
  }
  return 0;
}

uint32_t encoder_type(uint32_t connector_type) {
  switch (connector_type) {
    case DRM_MODE_CONNECTOR_VGA:
      return DRM_MODE_ENCODER_DAC;
    case DRM_MODE_CONNECTOR_LVDS:
      return DRM_MODE_ENCODER_LVDS;
    case DRM_MODE_CONNECTOR_VIRTUAL:
      return DRM_MODE_ENCODER_VIRTUAL;
    case DRM_MODE_CONNECTOR_DSI:
      return DRM_MODE_ENCODER_DSI;
    case DRM_MODE_CONNECTOR_DPI:
      return DRM_MODE_ENCODER_DPI;
    default:
      return DRM_MODE_ENCODER_TMDS;
  }
}

// Ids and values, as many as the caller has room for.
int copy_properties(DeviceAccess& device, const ObjectReference& object, uint32_t& count,
                    uint64_t ids_address, uint64_t values_address) {
  const auto list = properties_of(device.record(), object, device.file().atomic != 0);
  uint32_t count_of_values = count;
  return first_error({copy_to_caller(values_address, count_of_values, list.values),
                      copy_to_caller(ids_address, count, list.ids)});
}

}  // namespace

int get_resources(DeviceAccess& device, drm_mode_card_res& resources) {
  std::vector<uint32_t> crtcs;
  std::vector<uint32_t> connectors;
  std::vector<uint32_t> encoders;
  for (const Output& output : device.record().used_outputs()) {
    const size_t index = crtcs.size();
    crtcs.push_back(crtc_id(index));
    connectors.push_back(connector_id(index));
    if (output.has_encoder != 0) encoders.push_back(encoder_id(index));
  }
  resources.count_fbs = 0;
  resources.min_width = resources.min_height = kMinSize;
  resources.max_width = resources.max_height = kMaxSize;
  return first_error(
      {copy_to_caller(resources.crtc_id_ptr, resources.count_crtcs, crtcs),
       copy_to_caller(resources.connector_id_ptr, resources.count_connectors, connectors),
       copy_to_caller(resources.encoder_id_ptr, resources.count_encoders, encoders)});
}

int get_encoder(DeviceAccess& device, drm_mode_get_encoder& encoder) {
  const DeviceRecord& record = device.record();
  const auto found = find_object(record, encoder.encoder_id, DRM_MODE_OBJECT_ENCODER);
  if (found.type == 0) return -ENOENT;
  const size_t crtc = record.crtc_position(found.index);
  encoder.encoder_type = encoder_type(record.outputs[found.index].connector_type);
  encoder.crtc_id = record.outputs[found.index].lit != 0 ? crtc_id(crtc) : 0;
  encoder.possible_crtcs = 1U << crtc;
  encoder.possible_clones = 0;
  return 0;
}

int get_connector(DeviceAccess& device, drm_mode_get_connector& connector) {
  const auto found =
      find_object(device.record(), connector.connector_id, DRM_MODE_OBJECT_CONNECTOR);
  if (found.type == 0) return -ENOENT;
  const Output& output = device.record().outputs[found.index];
  std::vector<uint32_t> encoders;
  if (output.has_encoder != 0) encoders.push_back(encoder_id(found.index));
  connector.connector_type = output.connector_type;
  connector.connector_type_id = output.connector_type_id;
  connector.connection = output.connected != 0 ? kConnected : kDisconnected;
  connector.encoder_id = output.lit != 0 ? encoder_id(found.index) : 0;
  connector.mm_width = connector.mm_height = 0;
  connector.subpixel = 0;
  connector.count_modes = 0;  // the device sets none
  return first_error({copy_properties(device, found, connector.count_props, connector.props_ptr,
                                      connector.prop_values_ptr),
                      copy_to_caller(connector.encoders_ptr, connector.count_encoders, encoders)});
}

int get_property(DeviceAccess& /*device*/, drm_mode_get_property& property) {
  const Property* found = find_property(property.prop_id);
  if (found == nullptr) return -ENOENT;
  property.flags = found->flags;
  std::snprintf(property.name, sizeof(property.name), "%s", found->name);
  property.count_enum_blobs = 0;
  return copy_to_caller(property.values_ptr, property.count_values,
                        std::vector<uint64_t>(found->values.begin(), found->values.end()));
}

int get_object_properties(DeviceAccess& device, drm_mode_obj_get_properties& properties) {
  const auto object = find_object(device.record(), properties.obj_id, properties.obj_type);
  if (object.type == 0) return -ENOENT;
  const bool has_any =
      object.type == DRM_MODE_OBJECT_CRTC || object.type == DRM_MODE_OBJECT_CONNECTOR;
  if (!has_any) return -EINVAL;
  return copy_properties(device, object, properties.count_props, properties.props_ptr,
                         properties.prop_values_ptr);
}

}  // namespace board::drm
