#include "drm/display_state.h"

#include <drm.h>
#include <drm_mode.h>

#include <algorithm>
#include <cstring>
#include <sstream>

#include "drm/device_file.h"

namespace board {
namespace {

// The table that a CRTC shows.
void read_gamma(const drm::DeviceFile& device, uint32_t blob, DisplayConnector& connector) {
  const auto data = device.blob(blob - drm::blob_id(0));
  std::vector<drm_color_lut> entries(data.size() / sizeof(drm_color_lut));
  std::memcpy(entries.data(), data.data(), entries.size() * sizeof(drm_color_lut));
  for (const drm_color_lut& entry : entries) {
    connector.gamma.red.push_back(entry.red);
    connector.gamma.green.push_back(entry.green);
    connector.gamma.blue.push_back(entry.blue);
    if (entry.reserved != 0) ++connector.gamma_reserved_set;
  }
}

DisplayConnector read_connector(const drm::DeviceFile& device, size_t index) {
  const drm::DeviceRecord& record = device.record();
  const drm::Output& output = record.outputs[index];
  DisplayConnector connector;
  connector.name = connector_name(output.connector_type, output.connector_type_id);
  connector.connector_id = drm::connector_id(index);
  connector.type = output.connector_type;
  connector.type_id = output.connector_type_id;
  connector.connected = output.connected != 0;
  if (output.has_controls != 0) {
    const auto percent = [&](size_t i) { return static_cast<int>(output.controls[i]); };
    connector.controls = PictureControls{percent(0), percent(1), percent(2), percent(3)};
  }
  if (output.lit == 0) return connector;
  connector.crtc_id = drm::crtc_id(record.crtc_position(index));
  connector.width = record.settings.width;
  connector.height = record.settings.height;
  if (output.gamma_blob != 0) read_gamma(device, output.gamma_blob, connector);
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
    out << ", CRTC " << connector.crtc_id << ", " << connector.width << 'x' << connector.height
        << '\n';
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
  const drm::DeviceFile device(board_folder);
  DisplayState state;
  for (size_t i = 0; i < device.record().settings.output_count; ++i)
    state.connectors.push_back(read_connector(device, i));
  state.commits = device.record().commits;
  state.property_writes = device.record().property_writes;
  for (const drm::Blob& blob : device.record().blobs)
    state.blobs += blob.size != 0 ? 1 : 0;
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
