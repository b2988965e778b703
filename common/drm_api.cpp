#include "common/drm_api.h"

#include <drm_mode.h>
#include <xf86drm.h>
#include <xf86drmMode.h>

#include <cerrno>
#include <new>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include <baseparameter_api.h>

#include "base/log.h"
#include "common/drm_owner.h"
#include "common/primary_display.h"

namespace {

constexpr int kNoPrimary = -1;

// For the two operations that change the display: logs the result of the search.
std::optional<pq::PrimaryDisplay> open_display_to_change() {
  auto display = pq::open_primary_display();
  pq::log_display("get_primary_info ret %d ", display ? 0 : kNoPrimary);
  if (!display) pq::log_display("can't find primary info");
  return display;
}

pq::DrmObjectProperties get_properties(int fd, uint32_t object_id, uint32_t object_type) {
  pq::DrmObjectProperties properties(drmModeObjectGetProperties(fd, object_id, object_type));
  pq::log_display("props %p ", static_cast<void*>(properties.get()));
  return properties;
}

// The id of an object's property by name, 0 when it has none.
uint32_t find_property(int fd, const drmModeObjectProperties& properties, std::string_view name) {
  for (const uint32_t id : std::span(properties.props, properties.count_props)) {
    const pq::DrmProperty property(drmModeGetProperty(fd, id));
    if (property && property->prop_id != 0 && name == property->name) return property->prop_id;
  }
  return 0;
}

std::vector<drm_color_lut> interleave(std::span<const unsigned short> red,
                                      std::span<const unsigned short> green,
                                      std::span<const unsigned short> blue) {
  std::vector<drm_color_lut> table(red.size());
  for (size_t i = 0; i < table.size(); ++i)
    table[i] = {red[i], green[i], blue[i], 0};
  return table;
}

// From the tool's scale of 0..511 to percent, in single precision and cut: 256 gives 50.
unsigned short to_percent(unsigned short value) {
  constexpr float kScale = 511.0F;
  return static_cast<unsigned short>(static_cast<float>(value) / kScale * 100.0F);
}

struct PictureControls {
  unsigned short brightness, contrast, saturation, hue;  // percent
};

struct PictureControlIds {
  uint32_t brightness, contrast, saturation, hue;
};

int commit(const pq::PrimaryDisplay& display, const PictureControlIds& ids,
           const PictureControls& percent) {
  const pq::DrmAtomicRequest request(drmModeAtomicAlloc());
  const auto add = [&](uint32_t id, unsigned short value) {
    return drmModeAtomicAddProperty(request.get(), display.connector_id, id, value) >= 0;
  };
  // All four or none: three of them would give an unpredictable picture.
  const bool complete = add(ids.brightness, percent.brightness) &&
                        add(ids.contrast, percent.contrast) &&
                        add(ids.saturation, percent.saturation) && add(ids.hue, percent.hue);
  const int result = complete ? drmModeAtomicCommit(display.fd.get(), request.get(),
                                                    DRM_MODE_ATOMIC_NONBLOCK, nullptr)
                              : -ENOMEM;
  if (result < 0) pq::log_display("Failed to commit pset ret=%d\n", result);
  return result;
}

void store(const pq::PrimaryDisplay& display, const PictureControls& percent) {
  baseparameter_api parameters;
  const uint32_t type = display.connector_type;
  const uint32_t index = display.store_index();
  parameters.set_brightness(type, index, percent.brightness);
  parameters.set_contrast(type, index, percent.contrast);
  parameters.set_saturation(type, index, percent.saturation);
  parameters.set_hue(type, index, percent.hue);
  pq::log_display("save bcsh data brightness %d contrast %d saturation %d hue %d",
                  percent.brightness, percent.contrast, percent.saturation, percent.hue);
}

// Turns a lack of memory into -1: callers carry on with the rest of an update after any failure
// here.
template <typename Operation>
int out_of_memory_as_failure(Operation operation) {
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    pq::log_display("no memory for the display's settings");
    return -1;
  }
}

int set_gamma(std::span<const unsigned short> red, std::span<const unsigned short> green,
              std::span<const unsigned short> blue) {
  pq::log_display("set_3x1d_gamma start");
  const auto display = open_display_to_change();
  if (!display) return -1;
  const int fd = display->fd.get();
  pq::log_display("fd %d crtc_id %u type %u id %u ", fd, display->crtc_id, display->connector_type,
                  display->connector_type_id);
  const std::vector<drm_color_lut> table = interleave(red, green, blue);

  int result = -1;
  if (const auto properties = get_properties(fd, display->crtc_id, DRM_MODE_OBJECT_CRTC)) {
    const uint32_t property_id = find_property(fd, *properties, "GAMMA_LUT");
    if (property_id == 0) {
      pq::log_display("can't find GAMMA_LUT");
      return -1;
    }
    const pq::DrmBlob blob(fd, table.data(), table.size() * sizeof(drm_color_lut));
    // Blob 0 would take the table away instead of loading one.
    if (blob.id() != 0) {
      result = drmModeObjectSetProperty(fd, display->crtc_id, DRM_MODE_OBJECT_CRTC, property_id,
                                        blob.id());
    }
    pq::log_display("drmModeObjectSetProperty ret %d ", result);
  }
  pq::log_display("set_3x1d_gamma end");
  return result;
}

int set_controls(const PictureControls& percent) {
  const auto display = open_display_to_change();
  if (!display) return -1;
  const int fd = display->fd.get();
  pq::log_display("fd %d crtc_id %u type %u id %u connector_id %u", fd, display->crtc_id,
                  display->connector_type, display->connector_type_id, display->connector_id);
  pq::log_display("drmSetClientCap %d", drmSetClientCap(fd, DRM_CLIENT_CAP_ATOMIC, 1));

  const auto properties = get_properties(fd, display->connector_id, DRM_MODE_OBJECT_CONNECTOR);
  if (!properties) return -1;
  const PictureControlIds ids = {
      find_property(fd, *properties, "brightness"), find_property(fd, *properties, "contrast"),
      find_property(fd, *properties, "saturation"), find_property(fd, *properties, "hue")};
  pq::log_display("connector_id %u property_id %u ", display->connector_id, ids.brightness);
  if (ids.brightness == 0 || ids.contrast == 0 || ids.saturation == 0 || ids.hue == 0) {
    pq::log_display("can't find prop");
    return -1;
  }

  const int result = commit(*display, ids, percent);
  store(*display, percent);
  return result;
}

}  // namespace

int DrmApi::get_primary_info(int* fd, unsigned int* crtc_id, unsigned int* connector_type,
                             unsigned int* connector_type_id, unsigned int* connector_id) {
  auto display = pq::open_primary_display();
  if (!display) return kNoPrimary;
  *crtc_id = display->crtc_id;
  *connector_type = display->connector_type;
  *connector_type_id = display->connector_type_id;
  *connector_id = display->connector_id;
  *fd = display->fd.release();
  return 0;
}

int DrmApi::set_3x1d_gamma(unsigned int size, unsigned short* red, unsigned short* green,
                           unsigned short* blue) {
  return out_of_memory_as_failure([&] {
    return set_gamma({red, size}, {green, size}, {blue, size});
  });
}

int DrmApi::set_bcsh(unsigned short brightness, unsigned short contrast, unsigned short saturation,
                     unsigned short hue) {
  return out_of_memory_as_failure([&] {
    return set_controls(
        {to_percent(brightness), to_percent(contrast), to_percent(saturation), to_percent(hue)});
  });
}
