// The properties that the simulated device's objects have, with the names, kinds and ranges of the
// kernel's own ones, and their values in the device's record.
#ifndef BOARD_DRM_PROPERTIES_H_
#define BOARD_DRM_PROPERTIES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "drm/device_record.h"

namespace board::drm {

struct Property {
  const char* name;  // shorter than DRM_PROP_NAME_LEN
  PropertyId id;
  uint32_t object_type;  // DRM_MODE_OBJECT_*: what has it
  uint32_t flags;        // DRM_MODE_PROP_*
  // By kind: a range's least and largest value, an object's type; a blob has none.
  std::span<const uint64_t> values = {};
};

// Null when there is no property of that id.
const Property* find_property(uint32_t id);

// Which object an id means. type is DRM_MODE_OBJECT_*, 0 when there is no such object.
struct ObjectReference {
  uint32_t type = 0;
  size_t index = 0;  // of the output; of a blob's slot
};

// type: the wanted DRM_MODE_OBJECT_*, or DRM_MODE_OBJECT_ANY. An object of another type than the
// wanted is not found.
ObjectReference find_object(const DeviceRecord& device, uint32_t id, uint32_t type);

// The object's properties in the order in which the device lists them.
struct PropertyValues {
  std::vector<uint32_t> ids;
  std::vector<uint64_t> values;  // values[i] belongs to ids[i]
};
// atomic: also those that only atomic clients understand.
PropertyValues properties_of(const DeviceRecord& device, const ObjectReference& object,
                             bool atomic);

// Gives a property of the object a value as a driver does. 0; -ENOENT when the object has no such
// property; -EINVAL when the value is not one that it can have: the device sets no modes, so
// routing and ACTIVE can only be what they are, and a table has the size that the hardware takes.
int set_property(DeviceRecord& device, const ObjectReference& object, uint32_t property_id,
                 uint64_t value);

}  // namespace board::drm

#endif  // BOARD_DRM_PROPERTIES_H_
