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
#include <utility>

#include "description/description.h"
#include "drm/preload/requests.h"
#include "drm/preload/session.h"

namespace board::drm {
namespace {

static_assert(kDrmRequestType == DRM_IOCTL_BASE);

enum class Needs { kNothing, kMaster };

struct Request {
  unsigned long code;
  Needs needs;
  int (*handle)(Call& call, void* argument);
};

template <typename Argument, int (*Handle)(Call&, Argument&)>
int with(Call& call, void* argument) {
  return Handle(call, *static_cast<Argument*>(argument));
}

template <int (*Handle)(Call&)>
int without_argument(Call& call, void*) {
  return Handle(call);
}

// Who may do what is as in the kernel's own table (drm_ioctl.c). A request that is missing here
// answers EINVAL, as one that a kernel doesn't know: the device has no buffers, framebuffers and
// planes, and sends no events.
constexpr Request kRequests[] = {
    {DRM_IOCTL_VERSION, Needs::kNothing, with<drm_version, get_version>},
    {DRM_IOCTL_GET_UNIQUE, Needs::kNothing, with<drm_unique, get_unique>},
    {DRM_IOCTL_SET_VERSION, Needs::kMaster, with<drm_set_version, set_version>},
    {DRM_IOCTL_GET_CAP, Needs::kNothing, with<drm_get_cap, get_capability>},
    {DRM_IOCTL_SET_CLIENT_CAP, Needs::kNothing, with<drm_set_client_cap, set_client_capability>},
    {DRM_IOCTL_SET_MASTER, Needs::kNothing, without_argument<set_master>},
    {DRM_IOCTL_DROP_MASTER, Needs::kNothing, without_argument<drop_master>},
    {DRM_IOCTL_MODE_GETRESOURCES, Needs::kNothing, with<drm_mode_card_res, get_resources>},
    {DRM_IOCTL_MODE_GETPLANERESOURCES, Needs::kNothing,
     with<drm_mode_get_plane_res, get_plane_resources>},
    {DRM_IOCTL_MODE_GETCRTC, Needs::kNothing, with<drm_mode_crtc, get_crtc>},
    {DRM_IOCTL_MODE_GETENCODER, Needs::kNothing, with<drm_mode_get_encoder, get_encoder>},
    {DRM_IOCTL_MODE_GETCONNECTOR, Needs::kNothing, with<drm_mode_get_connector, get_connector>},
    {DRM_IOCTL_MODE_GETGAMMA, Needs::kNothing, with<drm_mode_crtc_lut, legacy_gamma>},
    {DRM_IOCTL_MODE_SETGAMMA, Needs::kMaster, with<drm_mode_crtc_lut, legacy_gamma>},
    {DRM_IOCTL_MODE_GETPROPERTY, Needs::kNothing, with<drm_mode_get_property, get_property>},
    {DRM_IOCTL_MODE_SETPROPERTY, Needs::kMaster,
     with<drm_mode_connector_set_property, set_connector_property>},
    {DRM_IOCTL_MODE_OBJ_GETPROPERTIES, Needs::kNothing,
     with<drm_mode_obj_get_properties, get_object_properties>},
    {DRM_IOCTL_MODE_OBJ_SETPROPERTY, Needs::kMaster,
     with<drm_mode_obj_set_property, set_object_property>},
    {DRM_IOCTL_MODE_CREATEPROPBLOB, Needs::kNothing, with<drm_mode_create_blob, create_blob>},
    {DRM_IOCTL_MODE_DESTROYPROPBLOB, Needs::kNothing, with<drm_mode_destroy_blob, destroy_blob>},
    {DRM_IOCTL_MODE_GETPROPBLOB, Needs::kNothing, with<drm_mode_get_blob, get_blob>},
    {DRM_IOCTL_MODE_ATOMIC, Needs::kMaster, with<drm_mode_atomic, atomic_commit>},
};

constexpr size_t kLargestArgument = 256;
static_assert(std::ranges::all_of(kRequests, [](const Request& request) {
  return _IOC_SIZE(request.code) <= kLargestArgument;
}));

// By number alone: size and direction in the code are the caller's, and structures grow.
const Request* find_request(unsigned long code) {
  const auto* found = std::ranges::find_if(
      kRequests, [code](const Request& known) { return _IOC_NR(known.code) == _IOC_NR(code); });
  return found == std::end(kRequests) ? nullptr : found;
}

// Runs the request on a copy of the state: a request that fails leaves nothing behind.
int run(const Request& request, Session& session, void* argument) {
  if (request.needs == Needs::kMaster && session.file().master == 0) return -EACCES;
  DeviceState former = session.state();
  Call call{session.state(), session.file()};
  const int result = request.handle(call, argument);
  if (result < 0) {
    session.state() = std::move(former);
  } else {
    session.state().drop_unused_blobs();
  }
  return result;
}

int copied_in_and_out(const Request& request, Session& session, unsigned long code,
                      void* argument) {
  const size_t size = _IOC_SIZE(code);
  if (size > 0 && argument == nullptr) return -EFAULT;
  if (size > kLargestArgument) return -EINVAL;
  alignas(std::max_align_t) std::array<uint8_t, kLargestArgument> copy = {};
  if (size > 0) std::memcpy(copy.data(), argument, size);
  const int result = run(request, session, copy.data());
  if (size > 0 && (code & IOC_OUT) != 0) std::memcpy(argument, copy.data(), size);
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
    Session session(board_folder(), descriptor);
    session.store();
    return 0;
  });
}

int handle_ioctl(int descriptor, unsigned long request, void* argument) noexcept {
  return as_errno([&] {
    Session session(board_folder(), descriptor);
    const Request* known = find_request(request);
    const int result =
        known != nullptr ? copied_in_and_out(*known, session, request, argument) : -EINVAL;
    session.store();
    return result;
  });
}

}  // namespace board::drm
