#include "drm/preload/dispatch.h"

#include <sys/ioctl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <iterator>
#include <new>
#include <system_error>

#include "description/description.h"
#include "drm/preload/device_access.h"
#include "drm/preload/requests.h"

namespace board::drm {
namespace {

static_assert(kDrmRequestType == DRM_IOCTL_BASE);

enum class Needs { kNothing, kMaster };

struct Request {
  unsigned long code;
  Needs needs;
  int (*handle)(DeviceAccess& device, void* argument);
};

template <typename Argument, int (*Handle)(DeviceAccess&, Argument&)>
int with(DeviceAccess& device, void* argument) {
  return Handle(device, *static_cast<Argument*>(argument));
}

// Permissions as in the kernel's own table (drm_ioctl.c). A request that is missing here
// answers EINVAL, as one that a kernel doesn't know: these are what libdrm needs to find a display
// and set its picture.
constexpr Request kRequests[] = {
    {DRM_IOCTL_VERSION, Needs::kNothing, with<drm_version, get_version>},
    {DRM_IOCTL_GET_UNIQUE, Needs::kNothing, with<drm_unique, get_unique>},
    {DRM_IOCTL_SET_CLIENT_CAP, Needs::kNothing, with<drm_set_client_cap, set_client_capability>},
    {DRM_IOCTL_MODE_GETRESOURCES, Needs::kNothing, with<drm_mode_card_res, get_resources>},
    {DRM_IOCTL_MODE_GETENCODER, Needs::kNothing, with<drm_mode_get_encoder, get_encoder>},
    {DRM_IOCTL_MODE_GETCONNECTOR, Needs::kNothing, with<drm_mode_get_connector, get_connector>},
    {DRM_IOCTL_MODE_GETPROPERTY, Needs::kNothing, with<drm_mode_get_property, get_property>},
    {DRM_IOCTL_MODE_OBJ_GETPROPERTIES, Needs::kNothing,
     with<drm_mode_obj_get_properties, get_object_properties>},
    {DRM_IOCTL_MODE_OBJ_SETPROPERTY, Needs::kMaster,
     with<drm_mode_obj_set_property, set_object_property>},
    {DRM_IOCTL_MODE_CREATEPROPBLOB, Needs::kNothing, with<drm_mode_create_blob, create_blob>},
    {DRM_IOCTL_MODE_DESTROYPROPBLOB, Needs::kNothing, with<drm_mode_destroy_blob, destroy_blob>},
    {DRM_IOCTL_MODE_ATOMIC, Needs::kMaster, with<drm_mode_atomic, atomic_commit>},
};

constexpr size_t kMaxArgument = 256;
static_assert(std::ranges::all_of(kRequests, [](const Request& request) {
  return _IOC_SIZE(request.code) <= kMaxArgument;
}));

// By number alone: size and direction in the code are the caller's, and structures grow.
const Request* find_request(unsigned long code) {
  const auto* found = std::ranges::find_if(
      kRequests, [code](const Request& known) { return _IOC_NR(known.code) == _IOC_NR(code); });
  return found == std::end(kRequests) ? nullptr : found;
}

int answer(const Request& request, DeviceAccess& device, unsigned long code, void* argument) {
  if (request.needs == Needs::kMaster && device.file().master == 0) return -EACCES;
  const size_t size = _IOC_SIZE(code);
  if (size > kMaxArgument) return -EINVAL;
  if (argument == nullptr) return -EFAULT;
  alignas(std::max_align_t) std::array<uint8_t, kMaxArgument> copy = {};
  std::memcpy(copy.data(), argument, size);
  const int result = device.run([&] { return request.handle(device, copy.data()); });
  if ((code & IOC_OUT) != 0) std::memcpy(argument, copy.data(), size);
  return result;
}

template <typename Work>
int as_errno(Work work) noexcept try {
  return work();
} catch (const std::system_error& error) {
  return -error.code().value();
} catch (const std::bad_alloc&) {
  return -ENOMEM;
} catch (const std::exception&) {
  return -EIO;
}

}  // namespace

int handle_open(int descriptor) noexcept {
  return as_errno([&] {
    const DeviceAccess registered(board_folder(), descriptor);
    return 0;
  });
}

int handle_ioctl(int descriptor, unsigned long request, void* argument) noexcept {
  return as_errno([&] {
    DeviceAccess device(board_folder(), descriptor);
    const Request* known = find_request(request);
    return known != nullptr ? answer(*known, device, request, argument) : -EINVAL;
  });
}

}  // namespace board::drm
