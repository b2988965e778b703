#include "common/primary_display.h"

#include <drm_mode.h>
#include <xf86drm.h>

#include <array>
#include <cstring>
#include <new>
#include <span>
#include <string>

#include <cutils/properties.h>

#include "base/log.h"
#include "common/drm_owner.h"
#include "documents/names.h"

namespace pq {
namespace {

constexpr char kDriverName[] = "velmoran";

// Names by DRM connector type code, as the compositor writes them into its property.
constexpr std::array<const char*, 18> kConnectorTypeNames = {
    "unknown",   "VGA", "DVI-I",  "DVI-D",  "DVI-A", "composite", "s-video", "LVDS", "component",
    "9-pin DIN", "DP",  "HDMI-A", "HDMI-B", "TV",    "eDP",       "Virtual", "DSI",  "DPI"};

bool is_built_in_panel(uint32_t type) {
  return type == DRM_MODE_CONNECTOR_LVDS || type == DRM_MODE_CONNECTOR_TV ||
         type == DRM_MODE_CONNECTOR_eDP || type == DRM_MODE_CONNECTOR_VIRTUAL ||
         type == DRM_MODE_CONNECTOR_DSI;
}

// Newer kernels know connector types that have no name here; those can't be asked for.
bool has_name(const drmModeConnector& connector, const char* name) {
  if (connector.connector_type >= kConnectorTypeNames.size()) return false;
  const char* type_name = kConnectorTypeNames[connector.connector_type];
  const std::string full_name =
      std::string(type_name) + "-" + std::to_string(connector.connector_type_id);
  log_display("primary_name %s connector_name %s strConnector %s ", name, type_name,
              full_name.c_str());
  return std::strcmp(name, type_name) == 0 || name == full_name;
}

// The first connected connector, in the device's order, that `chosen` accepts; null when none.
template <typename Chosen>
DrmConnector find_connected(int fd, const drmModeRes& resources, Chosen chosen) {
  for (const uint32_t id : std::span(resources.connectors, resources.count_connectors)) {
    DrmConnector connector(drmModeGetConnector(fd, id));
    if (connector && connector->connection == DRM_MODE_CONNECTED && chosen(*connector)) {
      return connector;
    }
  }
  return nullptr;
}

DrmConnector find_primary_connector(int fd, const drmModeRes& resources) {
  char name[PROPERTY_VALUE_MAX] = {};
  if (property_get(kPrimaryDisplayProperty, name, nullptr) > 0) {
    auto named = find_connected(fd, resources,
                                [&](const auto& connector) { return has_name(connector, name); });
    if (named) return named;
  }
  return find_connected(fd, resources, [](const auto& connector) {
    return is_built_in_panel(connector.connector_type);
  });
}

std::optional<PrimaryDisplay> find_and_open() {
  UniqueFd fd(drmOpen(kDriverName, nullptr));
  log_display("open fd %d ", fd.get());
  if (!fd.valid()) return std::nullopt;

  const DrmResources resources(drmModeGetResources(fd.get()));
  if (!resources) return std::nullopt;
  const DrmConnector connector = find_primary_connector(fd.get(), *resources);
  // The first encoder that could drive it, not the one that does: the board wires one to each.
  if (!connector || connector->count_encoders < 1) return std::nullopt;
  const DrmEncoder encoder(drmModeGetEncoder(fd.get(), connector->encoders[0]));
  if (!encoder) return std::nullopt;

  return PrimaryDisplay{std::move(fd), encoder->crtc_id, connector->connector_type,
                        connector->connector_type_id, connector->connector_id};
}

}  // namespace

std::optional<PrimaryDisplay> open_primary_display() {
  try {
    return find_and_open();
  } catch (const std::bad_alloc&) {
    log_display("no memory to find the primary display");
    return std::nullopt;
  }
}

}  // namespace pq
