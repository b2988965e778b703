// The requests that the device answers, one function each: the kernel's argument structure in and
// out, the result 0 or a negative errno. On a failure every change of the record is dropped.
#ifndef BOARD_DRM_PRELOAD_REQUESTS_H_
#define BOARD_DRM_PRELOAD_REQUESTS_H_

#include <drm.h>
#include <drm_mode.h>

#include "drm/preload/device_access.h"

namespace board::drm {

// driver_requests.cpp
int get_version(DeviceAccess& device, drm_version& version);
int get_unique(DeviceAccess& device, drm_unique& unique);
int set_client_capability(DeviceAccess& device, drm_set_client_cap& capability);

// object_requests.cpp
int get_resources(DeviceAccess& device, drm_mode_card_res& resources);
int get_encoder(DeviceAccess& device, drm_mode_get_encoder& encoder);
int get_connector(DeviceAccess& device, drm_mode_get_connector& connector);
int get_property(DeviceAccess& device, drm_mode_get_property& property);
int get_object_properties(DeviceAccess& device, drm_mode_obj_get_properties& properties);

// change_requests.cpp
int create_blob(DeviceAccess& device, drm_mode_create_blob& blob);
int destroy_blob(DeviceAccess& device, drm_mode_destroy_blob& blob);
int set_object_property(DeviceAccess& device, drm_mode_obj_set_property& property);
// Several properties of several objects at once, or none of them.
int atomic_commit(DeviceAccess& device, drm_mode_atomic& atomic);

}  // namespace board::drm

#endif  // BOARD_DRM_PRELOAD_REQUESTS_H_
