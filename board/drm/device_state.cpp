#include "drm/device_state.h"

#include <algorithm>
#include <cstddef>

#include "drm/properties.h"

namespace board::drm {
namespace {

template <typename List>
auto find_by_id(List& list, uint32_t id) -> decltype(list.data()) {
  const auto found = std::ranges::find_if(list, [id](const auto& item) { return item.id == id; });
  return found == list.end() ? nullptr : &*found;
}

bool refers_to(const PropertyList& properties, uint32_t blob_id) {
  for (size_t i = 0; i < properties.ids.size(); ++i) {
    const Property* property = find_property(properties.ids[i]);
    if (property != nullptr && property->is_blob() && properties.values[i] == blob_id) return true;
  }
  return false;
}

}  // namespace

void PropertyList::add(uint32_t id, uint64_t value) {
  ids.push_back(id);
  values.push_back(value);
}

uint64_t* PropertyList::find(uint32_t id) {
  const auto found = std::ranges::find(ids, id);
  return found == ids.end() ? nullptr : &values[static_cast<size_t>(found - ids.begin())];
}

const uint64_t* PropertyList::find(uint32_t id) const {
  return const_cast<PropertyList*>(this)->find(id);
}

uint64_t PropertyList::value(uint32_t id) const {
  const uint64_t* found = find(id);
  return found != nullptr ? *found : 0;
}

Crtc* DeviceState::find_crtc(uint32_t id) {
  return find_by_id(crtcs, id);
}
const Crtc* DeviceState::find_crtc(uint32_t id) const {
  return find_by_id(crtcs, id);
}
Encoder* DeviceState::find_encoder(uint32_t id) {
  return find_by_id(encoders, id);
}
Connector* DeviceState::find_connector(uint32_t id) {
  return find_by_id(connectors, id);
}
Blob* DeviceState::find_blob(uint32_t id) {
  return find_by_id(blobs, id);
}
const Blob* DeviceState::find_blob(uint32_t id) const {
  return find_by_id(blobs, id);
}

uint32_t DeviceState::free_id() const {
  uint32_t id = kFirstObjectId;
  while (find_by_id(crtcs, id) != nullptr || find_by_id(encoders, id) != nullptr ||
         find_by_id(connectors, id) != nullptr || find_by_id(blobs, id) != nullptr) {
    ++id;
  }
  return id;
}

uint32_t DeviceState::crtc_of_encoder(uint32_t encoder_id) const {
  for (const Connector& connector : connectors) {
    if (connector.encoder_id == encoder_id) {
      return static_cast<uint32_t>(connector.properties.value(kCrtcId));
    }
  }
  return 0;
}

OpenFile* DeviceState::master() {
  const auto found = std::ranges::find_if(open_files, &OpenFile::master);
  return found == open_files.end() ? nullptr : &*found;
}

void DeviceState::drop_unused_blobs() {
  std::erase_if(blobs, [this](const Blob& blob) {
    const auto uses = [&](const auto& object) { return refers_to(object.properties, blob.id); };
    return blob.owner == 0 && std::ranges::none_of(crtcs, uses) &&
           std::ranges::none_of(connectors, uses);
  });
}

}  // namespace board::drm
