#include "board_drm/device.h"

#include <unistd.h>

#include <utility>

void Device::close() {
  if (descriptor >= 0) ::close(std::exchange(descriptor, -1));
}

ConnectorPtr Device::connector(int index) const {
  const Resources resources(drmModeGetResources(descriptor));
  if (resources == nullptr || index >= resources->count_connectors) return nullptr;
  return ConnectorPtr(drmModeGetConnector(descriptor, resources->connectors[index]));
}

uint32_t Device::crtc_id(int index) const {
  const ConnectorPtr found = connector(index);
  if (found == nullptr || found->count_encoders == 0) return 0;
  const EncoderPtr encoder(drmModeGetEncoder(descriptor, found->encoders[0]));
  return encoder != nullptr ? encoder->crtc_id : 0;
}

Device::Property Device::find_property(uint32_t object_id, uint32_t type,
                                       const std::string& name) const {
  const PropertiesPtr list(drmModeObjectGetProperties(descriptor, object_id, type));
  for (uint32_t i = 0; list != nullptr && i < list->count_props; ++i) {
    if (PropertyPtr(drmModeGetProperty(descriptor, list->props[i]))->name == name) {
      return {list->props[i], list->prop_values[i]};
    }
  }
  return {};
}

uint32_t Device::gamma_blob(uint32_t entries, uint16_t value) const {
  std::vector<drm_color_lut> table(entries);
  for (drm_color_lut& entry : table) {
    entry = {value, value, value, 0};
    ++value;
  }
  uint32_t id = 0;
  drmModeCreatePropertyBlob(descriptor, table.data(), table.size() * sizeof(drm_color_lut), &id);
  return id;
}

int Device::set_gamma(uint32_t crtc, uint64_t blob) const {
  return drmModeObjectSetProperty(descriptor, crtc, DRM_MODE_OBJECT_CRTC,
                                  property_id(crtc, DRM_MODE_OBJECT_CRTC, "GAMMA_LUT"), blob);
}

int Device::load_gamma(uint32_t crtc, uint32_t entries, uint16_t value) const {
  const uint32_t blob = gamma_blob(entries, value);
  const int result = set_gamma(crtc, blob);
  drmModeDestroyPropertyBlob(descriptor, blob);
  return result;
}

int Device::commit(uint32_t connector_id, const std::vector<Item>& items, uint32_t flags) const {
  const AtomicRequest request(drmModeAtomicAlloc());
  for (const Item& item : items) {
    const uint32_t id = property_id(connector_id, DRM_MODE_OBJECT_CONNECTOR, item.property);
    drmModeAtomicAddProperty(request.get(), connector_id, id, item.value);
  }
  return drmModeAtomicCommit(descriptor, request.get(), flags, nullptr);
}

void DisplayDevice::boot(const std::function<void(board::Description&)>& change) {
  board::Description description;
  description.connectors = {board::Connector{}};
  if (change) change(description);
  board::create_display(board::board_folder(), description);
}
