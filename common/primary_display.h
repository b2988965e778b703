// The board's primary display, as the kernel's DRM interface shows it.
#ifndef COMMON_PRIMARY_DISPLAY_H_
#define COMMON_PRIMARY_DISPLAY_H_

#include <cstdint>
#include <optional>

#include "base/owner.h"

namespace pq {

struct PrimaryDisplay {
  UniqueFd fd;                     // the open device
  uint32_t crtc_id = 0;            // of the connector's first encoder
  uint32_t connector_type = 0;     // DRM code (drm_mode.h)
  uint32_t connector_type_id = 0;  // counts from 1 within the type
  uint32_t connector_id = 0;

  // The base-parameter store counts connectors of a type from 0.
  [[nodiscard]] uint32_t store_index() const { return connector_type_id - 1; }
};

// Finds the primary display: the connected connector that the property
// "vendor.hwc.device.primary" names (a type such as HDMI-A, or a type with its index such as
// HDMI-A-1), else the first connected built-in panel. Each call opens the device.
// Returns nothing if there is no such display or memory runs out. Callable from any
// thread.
std::optional<PrimaryDisplay> open_primary_display();

}  // namespace pq

#endif  // COMMON_PRIMARY_DISPLAY_H_
