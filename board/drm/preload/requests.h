// The requests that the device answers, one function each: the kernel's argument structure in and
// out, the result 0 or a negative errno. On a failure the dispatcher drops every change of state.
#ifndef BOARD_DRM_PRELOAD_REQUESTS_H_
#define BOARD_DRM_PRELOAD_REQUESTS_H_

#include <drm.h>
#include <drm_mode.h>

#include "drm/device_state.h"

namespace board::drm {

// What a request works on: the device, and the open file through which it came.
struct Call {
  DeviceState& state;
  OpenFile& file;
};

// device.cpp
int get_version(Call& call, drm_version& version);
int get_unique(Call& call, drm_unique& unique);
int set_version(Call& call, drm_set_version& version);
int get_capability(Call& call, drm_get_cap& capability);
int set_client_capability(Call& call, drm_set_client_cap& capability);
int set_master(Call& call);
int drop_master(Call& call);

// resources.cpp
int get_resources(Call& call, drm_mode_card_res& resources);
int get_plane_resources(Call& call, drm_mode_get_plane_res& resources);
int get_crtc(Call& call, drm_mode_crtc& crtc);
int get_encoder(Call& call, drm_mode_get_encoder& encoder);
int get_connector(Call& call, drm_mode_get_connector& connector);
int legacy_gamma(Call& call, drm_mode_crtc_lut& lut);

// object_properties.cpp
int get_property(Call& call, drm_mode_get_property& property);
int get_object_properties(Call& call, drm_mode_obj_get_properties& properties);
int set_object_property(Call& call, drm_mode_obj_set_property& property);
int set_connector_property(Call& call, drm_mode_connector_set_property& property);

// blobs.cpp
int create_blob(Call& call, drm_mode_create_blob& blob);
int destroy_blob(Call& call, drm_mode_destroy_blob& blob);
int get_blob(Call& call, drm_mode_get_blob& blob);

// atomic.cpp
int atomic_commit(Call& call, drm_mode_atomic& atomic);

}  // namespace board::drm

#endif  // BOARD_DRM_PRELOAD_REQUESTS_H_
