#include "drm/properties.h"

#include <drm.h>
#include <drm_mode.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace board::drm {
namespace {

static_assert(kMaxBlob == kMaxGammaTable * sizeof(drm_color_lut));

constexpr uint64_t kSwitch[] = {0, 1};
constexpr uint64_t kPercent[] = {0, 100};
constexpr uint64_t kTableSize[] = {0, UINT32_MAX};
constexpr uint64_t kCrtcObject[] = {DRM_MODE_OBJECT_CRTC};

constexpr uint32_t kCrtc = DRM_MODE_OBJECT_CRTC;
constexpr uint32_t kConnector = DRM_MODE_OBJECT_CONNECTOR;
constexpr uint32_t kRange = DRM_MODE_PROP_RANGE;
constexpr uint32_t kImmutable = DRM_MODE_PROP_IMMUTABLE;
// Shown only to clients with the atomic capability, who alone know what to do with it.
constexpr uint32_t kAtomic = DRM_MODE_PROP_ATOMIC;

constexpr Property kProperties[] = {
    {"ACTIVE", kActive, kCrtc, kRange | kAtomic, kSwitch},
    {"GAMMA_LUT", kGammaLut, kCrtc, DRM_MODE_PROP_BLOB},
    {"GAMMA_LUT_SIZE", kGammaLutSize, kCrtc, kRange | kImmutable, kTableSize},
    {"CRTC_ID", kCrtcId, kConnector, DRM_MODE_PROP_OBJECT | kAtomic, kCrtcObject},
    {"brightness", kBrightness, kConnector, kRange, kPercent},
    {"contrast", kContrast, kConnector, kRange, kPercent},
    {"saturation", kSaturation, kConnector, kRange, kPercent},
    {"hue", kHue, kConnector, kRange, kPercent},
};

// The position in a row of ids, `count` when the id is not among them.
size_t position(uint32_t id, uint32_t first, size_t count) {
  return id < first ? count : std::min<size_t>(id - first, count);
}

bool has_property(const DeviceRecord& device, const ObjectReference& object,
                  const Property& property) {
  if (property.object_type != object.type) return false;
  const bool gamma = property.id == kGammaLut || property.id == kGammaLutSize;
  if (gamma) return device.settings.gamma_lut_size > 0;
  const bool control = property.id >= kBrightness;
  return !control || device.outputs[object.index].has_controls != 0;
}

uint64_t value_of(const DeviceRecord& device, size_t index, PropertyId id) {
  const Output& output = device.outputs[index];
  switch (id) {
    case kActive:
      return output.lit;
    case kGammaLut:
      return output.gamma_blob;
    case kGammaLutSize:
      return device.settings.gamma_lut_size;
    case kCrtcId:
      return output.lit != 0 ? crtc_id(device.crtc_position(index)) : 0;
    default:
      return output.controls[id - kBrightness];
  }
}

bool is_table(const DeviceRecord& device, uint64_t id) {
  if (id == 0) return true;  // none
  if (id > UINT32_MAX) return false;
  const auto blob = find_object(device, static_cast<uint32_t>(id), DRM_MODE_OBJECT_BLOB);
  return blob.type != 0 &&
         device.blobs[blob.index].size == device.settings.gamma_lut_size * sizeof(drm_color_lut);
}

}  // namespace

const Property* find_property(uint32_t id) {
  const auto* found = std::ranges::find(kProperties, id, &Property::id);
  return found == std::end(kProperties) ? nullptr : found;
}

ObjectReference find_object(const DeviceRecord& device, uint32_t id, uint32_t type) {
  const size_t count = device.settings.output_count;
  const size_t crtc = position(id, crtc_id(0), count);
  const size_t encoder = position(id, encoder_id(0), count);
  const size_t connector = position(id, connector_id(0), count);
  const size_t slot = position(id, blob_id(0), kMaxBlobs);
  ObjectReference found;
  if (crtc < count) {
    found = {DRM_MODE_OBJECT_CRTC, device.crtc_position(crtc)};
  } else if (encoder < count && device.outputs[encoder].has_encoder != 0) {
    found = {DRM_MODE_OBJECT_ENCODER, encoder};
  } else if (connector < count) {
    found = {DRM_MODE_OBJECT_CONNECTOR, connector};
  } else if (slot < kMaxBlobs && device.blobs[slot].size != 0) {
    found = {DRM_MODE_OBJECT_BLOB, slot};
  }
  return type == DRM_MODE_OBJECT_ANY || type == found.type ? found : ObjectReference{};
}

PropertyValues properties_of(const DeviceRecord& device, const ObjectReference& object,
                             bool atomic) {
  PropertyValues list;
  for (const Property& property : kProperties) {
    const bool shown = atomic || (property.flags & kAtomic) == 0;
    if (!shown || !has_property(device, object, property)) continue;
    list.ids.push_back(property.id);
    list.values.push_back(value_of(device, object.index, property.id));
  }
  return list;
}

int set_property(DeviceRecord& device, const ObjectReference& object, uint32_t property_id,
                 uint64_t value) {
  const Property* property = find_property(property_id);
  if (property == nullptr || !has_property(device, object, *property)) return -ENOENT;
  if ((property->flags & kImmutable) != 0) return -EINVAL;
  Output& output = device.outputs[object.index];
  switch (property->id) {
    case kActive:
    case kCrtcId:
      return value == value_of(device, object.index, property->id) ? 0 : -EINVAL;
    case kGammaLut:
      if (!is_table(device, value)) return -EINVAL;
      output.gamma_blob = static_cast<uint32_t>(value);
      return 0;
    default:
      if (value > kPercent[1]) return -EINVAL;
      output.controls[property->id - kBrightness] = static_cast<uint32_t>(value);
      return 0;
  }
}

}  // namespace board::drm
