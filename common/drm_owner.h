// Owners of libdrm objects.
#ifndef COMMON_DRM_OWNER_H_
#define COMMON_DRM_OWNER_H_

#include <xf86drmMode.h>

#include <memory>

#include "base/owner.h"

namespace pq {

using DrmResources = std::unique_ptr<drmModeRes, Call<drmModeFreeResources>>;
using DrmConnector = std::unique_ptr<drmModeConnector, Call<drmModeFreeConnector>>;
using DrmEncoder = std::unique_ptr<drmModeEncoder, Call<drmModeFreeEncoder>>;
using DrmProperty = std::unique_ptr<drmModePropertyRes, Call<drmModeFreeProperty>>;
using DrmObjectProperties =
    std::unique_ptr<drmModeObjectProperties, Call<drmModeFreeObjectProperties>>;
using DrmAtomicRequest = std::unique_ptr<drmModeAtomicReq, Call<drmModeAtomicFree>>;

// A property blob. The kernel keeps it alive while a display property refers to it.
class DrmBlob {
 public:
  DrmBlob(int fd, const void* data, size_t size) : fd_(fd) {
    if (drmModeCreatePropertyBlob(fd, data, size, &id_) != 0) id_ = 0;
  }
  ~DrmBlob() {
    if (id_ != 0) drmModeDestroyPropertyBlob(fd_, id_);
  }
  DrmBlob(const DrmBlob&) = delete;
  DrmBlob& operator=(const DrmBlob&) = delete;

  [[nodiscard]] uint32_t id() const { return id_; }  // 0: could not be created

 private:
  int fd_;
  uint32_t id_ = 0;
};

}  // namespace pq

#endif  // COMMON_DRM_OWNER_H_
