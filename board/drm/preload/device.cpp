// Requests about the driver and about who its master is.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "drm/preload/requests.h"

namespace board::drm {
namespace {

constexpr std::string_view kDriverName = "velmoran";
constexpr std::string_view kDriverDate = "20240115";
constexpr std::string_view kDriverDescription = "simulated display device";
constexpr std::string_view kBusId = "platform:display-subsystem";

constexpr int kInterfaceMajor = 1;
constexpr int kInterfaceMinor = 4;

// Copies what fits and always tells the whole length. No terminator: callers add their own.
template <typename Length>
int copy_text(std::string_view text, char* out, Length& length) {
  const size_t fitting = std::min<size_t>(length, text.size());
  length = text.size();
  if (fitting == 0 || out == nullptr) return 0;
  std::memcpy(out, text.data(), fitting);
  return 0;
}

bool has_bus_id(Call& call) {
  const OpenFile* master = call.state.master();
  return master != nullptr ? master->bus_id_set != 0 : call.state.settings.other_master_named != 0;
}

}  // namespace

int get_version(Call& /*call*/, drm_version& version) {
  version.version_major = 1;
  version.version_minor = 0;
  version.version_patchlevel = 0;
  copy_text(kDriverName, version.name, version.name_len);
  copy_text(kDriverDate, version.date, version.date_len);
  return copy_text(kDriverDescription, version.desc, version.desc_len);
}

// A name shows that a master has claimed the device; opening by driver name passes over it then.
int get_unique(Call& call, drm_unique& unique) {
  const std::string_view name = has_bus_id(call) ? kBusId : std::string_view();
  if (unique.unique_len >= name.size()) return copy_text(name, unique.unique, unique.unique_len);
  unique.unique_len = name.size();
  return 0;
}

int set_version(Call& call, drm_set_version& version) {
  constexpr int kNotAsked = -1;
  const bool wanted = version.drm_di_major != kNotAsked;
  const bool known = version.drm_di_major == kInterfaceMajor && version.drm_di_minor >= 0 &&
                     version.drm_di_minor <= kInterfaceMinor;
  if (wanted && !known) return -EINVAL;
  if (wanted && version.drm_di_minor >= 1) call.file.bus_id_set = 1;
  version = {kInterfaceMajor, kInterfaceMinor, 1, 0};
  return 0;
}

int get_capability(Call& /*call*/, drm_get_cap& capability) {
  switch (capability.capability) {
    case DRM_CAP_TIMESTAMP_MONOTONIC:
    case DRM_CAP_VBLANK_HIGH_CRTC:
      capability.value = 1;
      return 0;
    case DRM_CAP_DUMB_BUFFER:
    case DRM_CAP_PRIME:
    case DRM_CAP_ASYNC_PAGE_FLIP:
    case DRM_CAP_ADDFB2_MODIFIERS:
    case DRM_CAP_CRTC_IN_VBLANK_EVENT:
      capability.value = 0;
      return 0;
    default:
      return -EINVAL;
  }
}

int set_client_capability(Call& call, drm_set_client_cap& capability) {
  constexpr uint64_t kNewestAtomic = 2;
  switch (capability.capability) {
    case DRM_CLIENT_CAP_ATOMIC:
      if (capability.value > kNewestAtomic) return -EINVAL;
      call.file.atomic = capability.value != 0 ? 1 : 0;
      return 0;
    // Taken and without effect: there are no stereo modes and no planes to show or hide.
    case DRM_CLIENT_CAP_STEREO_3D:
    case DRM_CLIENT_CAP_UNIVERSAL_PLANES:
    case DRM_CLIENT_CAP_ASPECT_RATIO:
      return capability.value > 1 ? -EINVAL : 0;
    default:
      return -EINVAL;
  }
}

int set_master(Call& call) {
  if (call.file.master != 0) return 0;
  if (call.file.was_master == 0) return -EACCES;
  if (call.state.master() != nullptr) return -EBUSY;
  call.file.master = 1;
  return 0;
}

int drop_master(Call& call) {
  if (call.file.was_master == 0) return -EACCES;
  if (call.file.master == 0) return -EINVAL;
  call.file.master = 0;
  return 0;
}

}  // namespace board::drm
