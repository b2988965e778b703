// Reading and writing the properties of an object, shared by the requests that do either.
#ifndef BOARD_DRM_PRELOAD_PROPERTY_LIST_H_
#define BOARD_DRM_PRELOAD_PROPERTY_LIST_H_

#include <cstdint>

#include "drm/device_state.h"
#include "drm/properties.h"

namespace board::drm {

// Which object an id means. type is DRM_MODE_OBJECT_* and 0 when there is no such object;
// properties is null for kinds of objects that have none (encoders).
struct ObjectReference {
  uint32_t id = 0;
  uint32_t type = 0;
  PropertyList* properties = nullptr;
};

// type: the wanted DRM_MODE_OBJECT_*, or DRM_MODE_OBJECT_ANY. An object of another type than the
// wanted is not found. Valid until the state's lists change.
ObjectReference find_object(DeviceState& state, uint32_t id, uint32_t type);

// Copies ids and values to the caller, as many as its `count` has room for, and sets `count` to
// how many there are. What only atomic clients understand is left out for others. 0 or -EFAULT.
int copy_properties(const PropertyList& properties, const OpenFile& file, uint32_t& count,
                    uint64_t ids_address, uint64_t values_address);

// Gives a property of the object a value, as an atomic driver does: 0, or -EINVAL when the value
// is not one that the property can have, or is a table of a size that the hardware doesn't take.
// Says nothing about whether the whole makes a picture; see check_routing.
int set_property(DeviceState& state, const ObjectReference& object, const Property& property,
                 uint64_t value);

// Whether every CRTC, mode and connector fit together: 0 or -EINVAL.
int check_routing(const DeviceState& state);

}  // namespace board::drm

#endif  // BOARD_DRM_PRELOAD_PROPERTY_LIST_H_
