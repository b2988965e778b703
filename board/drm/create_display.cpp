#include <drm.h>
#include <drm_mode.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include "drm/display_state.h"
#include "drm/properties.h"
#include "drm/state_file.h"

namespace board {
namespace {

using drm::DeviceState;

uint32_t encoder_type(uint32_t connector_type) {
  switch (connector_type) {
    case DRM_MODE_CONNECTOR_VGA:
      return DRM_MODE_ENCODER_DAC;
    case DRM_MODE_CONNECTOR_LVDS:
      return DRM_MODE_ENCODER_LVDS;
    case DRM_MODE_CONNECTOR_TV:
    case DRM_MODE_CONNECTOR_Composite:
    case DRM_MODE_CONNECTOR_SVIDEO:
      return DRM_MODE_ENCODER_TVDAC;
    case DRM_MODE_CONNECTOR_VIRTUAL:
      return DRM_MODE_ENCODER_VIRTUAL;
    case DRM_MODE_CONNECTOR_DSI:
      return DRM_MODE_ENCODER_DSI;
    case DRM_MODE_CONNECTOR_DPI:
      return DRM_MODE_ENCODER_DPI;
    default:
      return DRM_MODE_ENCODER_TMDS;
  }
}

// The panel's own mode: 60 Hz with a tenth of blanking each way.
std::vector<uint8_t> panel_mode(uint32_t width, uint32_t height) {
  drm_mode_modeinfo mode = {};
  const auto blanked = [](uint32_t visible, uint32_t quarters) {
    return static_cast<uint16_t>(visible + visible * quarters / 40);
  };
  mode.hdisplay = static_cast<uint16_t>(width);
  mode.hsync_start = blanked(width, 1);
  mode.hsync_end = blanked(width, 2);
  mode.htotal = blanked(width, 4);
  mode.vdisplay = static_cast<uint16_t>(height);
  mode.vsync_start = blanked(height, 1);
  mode.vsync_end = blanked(height, 2);
  mode.vtotal = blanked(height, 4);
  mode.vrefresh = 60;
  mode.clock = uint32_t{mode.htotal} * mode.vtotal * mode.vrefresh / 1000;
  mode.type = DRM_MODE_TYPE_PREFERRED | DRM_MODE_TYPE_DRIVER;
  std::snprintf(mode.name, sizeof(mode.name), "%ux%u", width, height);
  std::vector<uint8_t> bytes(sizeof(mode));
  std::memcpy(bytes.data(), &mode, sizeof(mode));
  return bytes;
}

drm::Settings settings_of(const Description& description) {
  const Faults& faults = description.faults;
  drm::Settings settings;
  settings.gamma_lut_size = description.gamma_lut_size;
  settings.open_errno = faults.open_errno;
  settings.gamma_errno = faults.gamma_errno;
  settings.commit_errno = faults.commit_errno;
  settings.other_master = faults.not_master || faults.bus_id;
  settings.other_master_named = faults.bus_id;
  settings.pace_commits = faults.pace_commits;
  return settings;
}

void add_crtc(DeviceState& state) {
  drm::Crtc crtc{state.free_id(), {}};
  crtc.properties.add(drm::kActive, 0);
  crtc.properties.add(drm::kModeId, 0);
  crtc.properties.add(drm::kVrrEnabled, 0);
  crtc.properties.add(drm::kDegammaLut, 0);
  crtc.properties.add(drm::kDegammaLutSize, drm::kDegammaEntries);
  crtc.properties.add(drm::kCtm, 0);
  if (state.settings.gamma_lut_size > 0) {
    crtc.properties.add(drm::kGammaLut, 0);
    crtc.properties.add(drm::kGammaLutSize, state.settings.gamma_lut_size);
  }
  state.crtcs.push_back(crtc);
}

void add_connector(DeviceState& state, const Connector& described, uint32_t encoder_id) {
  drm::Connector connector;
  connector.id = state.free_id();
  connector.type = described.type;
  connector.type_id = described.type_id;
  connector.connected = described.connected;
  connector.encoder_id = encoder_id;
  drm::PropertyList& properties = connector.properties;
  properties.add(drm::kEdid, 0);
  properties.add(drm::kDpms, DRM_MODE_DPMS_ON);
  properties.add(drm::kNonDesktop, 0);
  properties.add(drm::kCrtcId, 0);
  properties.add(drm::kMaxBpc, 10);
  if (described.picture_controls) {
    properties.add(drm::kBrightness, drm::kNeutralPicture);
    properties.add(drm::kContrast, drm::kNeutralPicture);
    properties.add(drm::kSaturation, drm::kNeutralPicture);
    properties.add(drm::kHue, drm::kNeutralPicture);
  }
  state.connectors.push_back(connector);
}

// What a display service does at its start: the panel shows a picture from then on.
void light(DeviceState& state, drm::Connector& connector, drm::Crtc& crtc,
           const Description& description) {
  const uint32_t mode = state.free_id();
  state.blobs.push_back({mode, 0, panel_mode(description.dump_width, description.dump_height)});
  *crtc.properties.find(drm::kModeId) = mode;
  *crtc.properties.find(drm::kActive) = 1;
  *connector.properties.find(drm::kCrtcId) = crtc.id;
}

DeviceState power_on(const Description& description) {
  DeviceState state;
  state.settings = settings_of(description);
  const auto count = static_cast<uint32_t>(description.connectors.size());
  for (uint32_t i = 0; i < count; ++i)
    add_crtc(state);
  // Each encoder has a CRTC of its own, the last one first: the CRTC at the connector's index is
  // the wrong one on any board with two connectors.
  for (uint32_t i = 0; i < count; ++i) {
    if (!description.connectors[i].has_encoder) continue;
    state.encoders.push_back(
        {state.free_id(), encoder_type(description.connectors[i].type), 1U << (count - 1 - i)});
  }
  auto encoder = state.encoders.begin();
  for (const Connector& described : description.connectors) {
    add_connector(state, described, described.has_encoder ? (encoder++)->id : 0);
  }
  for (uint32_t i = 0; i < count; ++i) {
    const Connector& described = description.connectors[i];
    if (described.has_encoder && described.connected && described.lit) {
      light(state, state.connectors[i], state.crtcs[count - 1 - i], description);
    }
  }
  return state;
}

}  // namespace

void create_display(const std::filesystem::path& board_folder, const Description& description) {
  const std::filesystem::path node = drm::node(board_folder);
  std::filesystem::create_directories(node.parent_path());
  drm::write_image(board_folder, drm::encode(power_on(description)));
  if (description.faults.no_device) {
    std::filesystem::remove(node);
  } else if (::mknod(node.c_str(), S_IFREG | 0666, 0) != 0 && errno != EEXIST) {
    // One that is there is kept: a running program may have it bound into its own root.
    throw std::system_error(errno, std::generic_category(), node.string());
  }
}

std::filesystem::path display_node_folder(const std::filesystem::path& board_folder) {
  return drm::node_folder(board_folder);
}

}  // namespace board
