#include "drm/display_state.h"

#include <drm.h>
#include <drm_mode.h>

#include <algorithm>
#include <cstring>
#include <sstream>

#include "drm/properties.h"
#include "drm/state_file.h"

namespace board {
namespace {

using drm::DeviceState;

const std::vector<uint8_t>* blob_data(const DeviceState& state, uint64_t id) {
  const drm::Blob* blob = state.find_blob(static_cast<uint32_t>(id));
  return blob != nullptr ? &blob->data : nullptr;
}

void read_mode(const DeviceState& state, const drm::Crtc& crtc, DisplayConnector& connector) {
  const auto* data = blob_data(state, crtc.properties.value(drm::kModeId));
  drm_mode_modeinfo mode = {};
  if (data == nullptr || data->size() != sizeof(mode)) return;
  std::memcpy(&mode, data->data(), sizeof(mode));
  connector.width = mode.hdisplay;
  connector.height = mode.vdisplay;
}

void read_gamma(const DeviceState& state, const drm::Crtc& crtc, DisplayConnector& connector) {
  const auto* data = blob_data(state, crtc.properties.value(drm::kGammaLut));
  if (data == nullptr) return;
  std::vector<drm_color_lut> entries(data->size() / sizeof(drm_color_lut));
  std::memcpy(entries.data(), data->data(), entries.size() * sizeof(drm_color_lut));
  for (const drm_color_lut& entry : entries) {
    connector.gamma.red.push_back(entry.red);
    connector.gamma.green.push_back(entry.green);
    connector.gamma.blue.push_back(entry.blue);
    if (entry.reserved != 0) ++connector.gamma_reserved_set;
  }
}

std::optional<PictureControls> read_controls(const drm::PropertyList& properties) {
  if (properties.find(drm::kBrightness) == nullptr) return std::nullopt;
  const auto value = [&](uint32_t id) { return static_cast<uint32_t>(properties.value(id)); };
  return PictureControls{value(drm::kBrightness), value(drm::kContrast), value(drm::kSaturation),
                         value(drm::kHue)};
}

DisplayConnector read_connector(const DeviceState& state, const drm::Connector& source) {
  DisplayConnector connector;
  connector.name = connector_name(source.type, source.type_id);
  connector.connector_id = source.id;
  connector.type = source.type;
  connector.type_id = source.type_id;
  connector.connected = source.connected != 0;
  connector.crtc_id = static_cast<uint32_t>(source.properties.value(drm::kCrtcId));
  connector.controls = read_controls(source.properties);
  if (const drm::Crtc* crtc = state.find_crtc(connector.crtc_id)) {
    connector.active = crtc->properties.value(drm::kActive) != 0;
    read_mode(state, *crtc, connector);
    read_gamma(state, *crtc, connector);
  }
  return connector;
}

bool is_built_in_panel(const DisplayConnector& connector) {
  constexpr uint32_t kPanelTypes[] = {DRM_MODE_CONNECTOR_LVDS, DRM_MODE_CONNECTOR_TV,
                                      DRM_MODE_CONNECTOR_eDP, DRM_MODE_CONNECTOR_VIRTUAL,
                                      DRM_MODE_CONNECTOR_DSI};
  return std::ranges::find(kPanelTypes, connector.type) != std::end(kPanelTypes);
}

void describe_channel(std::ostream& out, const char* name, const std::vector<uint16_t>& values) {
  out << "  " << name << ' ' << values.front() << ".." << values[values.size() / 2] << ".."
      << values.back();
}

void describe_gamma(std::ostream& out, const DisplayConnector& connector) {
  const GammaTable& gamma = connector.gamma;
  if (gamma.red.empty()) {
    out << "  gamma table: none\n";
    return;
  }
  out << "  gamma table: " << gamma.red.size() << " entries, first..middle..last:";
  describe_channel(out, "red", gamma.red);
  describe_channel(out, "green", gamma.green);
  describe_channel(out, "blue", gamma.blue);
  out << '\n';
  if (connector.gamma_reserved_set > 0) {
    out << "  gamma table: the reserved word is not 0 in " << connector.gamma_reserved_set
        << " entries\n";
  }
}

void describe_connector(std::ostream& out, const DisplayConnector& connector) {
  out << connector.name << " (connector " << connector.connector_id << "): ";
  out << (connector.connected ? "connected" : "disconnected");
  if (connector.crtc_id == 0) {
    out << ", dark: no CRTC\n";
  } else {
    out << ", CRTC " << connector.crtc_id << (connector.active ? ", " : " (off), ")
        << connector.width << 'x' << connector.height << '\n';
    describe_gamma(out, connector);
  }
  if (const auto& controls = connector.controls) {
    out << "  brightness " << controls->brightness << "  contrast " << controls->contrast
        << "  saturation " << controls->saturation << "  hue " << controls->hue << '\n';
  } else {
    out << "  no picture controls\n";
  }
}

}  // namespace

DisplayState read_display_state(const std::filesystem::path& board_folder) {
  const DeviceState device = drm::decode(drm::read_image(board_folder));
  DisplayState state;
  for (const drm::Connector& connector : device.connectors) {
    state.connectors.push_back(read_connector(device, connector));
  }
  state.commits = device.commits;
  state.property_writes = device.property_writes;
  state.blobs = device.blobs.size();
  state.open_files = device.open_files.size();
  return state;
}

const DisplayConnector* shown_connector(const DisplayState& state, std::string_view primary) {
  const auto first = [&](auto wanted) {
    const auto found = std::ranges::find_if(
        state.connectors, [&](const auto& item) { return item.connected && wanted(item); });
    return found == state.connectors.end() ? nullptr : &*found;
  };
  const auto* chosen = first([&](const DisplayConnector& connector) {
    const std::string_view name = connector.name;
    return name == primary || name.substr(0, name.rfind('-')) == primary;
  });
  if (chosen == nullptr) chosen = first(is_built_in_panel);
  if (chosen == nullptr) chosen = first([](const auto&) { return true; });
  return chosen;
}

std::string describe_display(const std::filesystem::path& board_folder) {
  const DisplayState state = read_display_state(board_folder);
  std::ostringstream out;
  for (const DisplayConnector& connector : state.connectors)
    describe_connector(out, connector);
  out << state.commits << " atomic commits, " << state.property_writes << " property writes, "
      << state.blobs << " blobs\n";
  return out.str();
}

}  // namespace board
