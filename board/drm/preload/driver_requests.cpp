// Requests about the driver and its client.
#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "drm/preload/requests.h"

namespace board::drm {
namespace {

constexpr std::string_view kDriverName = "velmoran";
constexpr std::string_view kDriverDate = "20240115";
constexpr std::string_view kDriverDescription = "simulated display device";
constexpr std::string_view kBusId = "platform:display-subsystem";

// Copies as much as fits and always tells the whole length. No terminator: callers add their own.
void copy_text(std::string_view text, char* out, __kernel_size_t& length) {
  const size_t fitting = std::min<size_t>(length, text.size());
  length = text.size();
  if (fitting > 0 && out != nullptr) std::memcpy(out, text.data(), fitting);
}

}  // namespace

int get_version(DeviceAccess& /*device*/, drm_version& version) {
  version.version_major = 1;
  version.version_minor = 0;
  version.version_patchlevel = 0;
  copy_text(kDriverName, version.name, version.name_len);
  copy_text(kDriverDate, version.date, version.date_len);
  copy_text(kDriverDescription, version.desc, version.desc_len);
  return 0;
}

// A name shows that a master has claimed the device; opening by driver name passes it over then.
int get_unique(DeviceAccess& device, drm_unique& unique) {
  const bool claimed = device.record().settings.other_master_named != 0;
  copy_text(claimed ? kBusId : std::string_view(), unique.unique, unique.unique_len);
  return 0;
}

int set_client_capability(DeviceAccess& device, drm_set_client_cap& capability) {
  constexpr uint64_t kNewestAtomic = 2;
  if (capability.capability != DRM_CLIENT_CAP_ATOMIC || capability.value > kNewestAtomic) {
    return -EINVAL;
  }
  device.file().atomic = capability.value != 0 ? 1 : 0;
  return 0;
}

}  // namespace board::drm
