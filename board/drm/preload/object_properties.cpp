// Requests that read properties and set a single one.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "drm/preload/caller_memory.h"
#include "drm/preload/property_list.h"
#include "drm/preload/requests.h"

namespace board::drm {
namespace {

// DPMS is a switch of old for what is the CRTC's ACTIVE today; a kernel translates it.
void follow_dpms(DeviceState& state, const Connector& connector) {
  Crtc* crtc = state.find_crtc(static_cast<uint32_t>(connector.properties.value(kCrtcId)));
  if (crtc == nullptr) return;
  *crtc->properties.find(kActive) = connector.properties.value(kDpms) == DRM_MODE_DPMS_ON ? 1 : 0;
}

}  // namespace

int get_property(Call& /*call*/, drm_mode_get_property& property) {
  const Property* found = find_property(property.prop_id);
  if (found == nullptr) return -ENOENT;
  property.flags = found->flags;
  std::memset(property.name, 0, sizeof(property.name));
  std::snprintf(property.name, sizeof(property.name), "%s", found->name);

  std::vector<drm_mode_property_enum> enumerators;
  for (const Enumerator& enumerator : found->enumerators) {
    drm_mode_property_enum& added = enumerators.emplace_back();
    added.value = enumerator.value;
    std::snprintf(added.name, sizeof(added.name), "%s", enumerator.name);
  }
  const std::vector<uint64_t> values(found->values.begin(), found->values.end());
  const int result = copy_what_fits(property.values_ptr, property.count_values, values);
  if (result < 0) return result;
  return copy_what_fits(property.enum_blob_ptr, property.count_enum_blobs, enumerators);
}

int get_object_properties(Call& call, drm_mode_obj_get_properties& properties) {
  const ObjectReference object = find_object(call.state, properties.obj_id, properties.obj_type);
  if (object.type == 0) return -ENOENT;
  if (object.properties == nullptr) return -EINVAL;
  return copy_properties(*object.properties, call.file, properties.count_props,
                         properties.props_ptr, properties.prop_values_ptr);
}

// Needs no atomic capability, and works on a CRTC that is off: a table loaded then shows later.
int set_object_property(Call& call, drm_mode_obj_set_property& property) {
  const ObjectReference object = find_object(call.state, property.obj_id, property.obj_type);
  if (object.type == 0) return -ENOENT;
  if (object.properties == nullptr || object.properties->find(property.prop_id) == nullptr) {
    return -EINVAL;
  }
  int result = set_property(call.state, object, *find_property(property.prop_id), property.value);
  if (result == 0 && property.prop_id == kDpms) {
    follow_dpms(call.state, *call.state.find_connector(object.id));
  }
  if (result == 0) result = check_routing(call.state);
  const Settings& settings = call.state.settings;
  if (result == 0 && property.prop_id == kGammaLut) result = -settings.gamma_errno;
  if (result == 0) ++call.state.property_writes;
  return result;
}

int set_connector_property(Call& call, drm_mode_connector_set_property& property) {
  drm_mode_obj_set_property same = {property.value, property.prop_id, property.connector_id,
                                    DRM_MODE_OBJECT_CONNECTOR};
  return set_object_property(call, same);
}

}  // namespace board::drm
