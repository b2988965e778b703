#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

#include "drm/device_file.h"
#include "drm/display_state.h"

namespace board {
namespace {

using drm::DeviceRecord;

// In percent: brightness, contrast, saturation and hue change nothing.
constexpr uint32_t kNeutral = 50;

drm::Settings settings_of(const Description& description) {
  const Faults& faults = description.faults;
  drm::Settings settings{};
  settings.gamma_lut_size = description.gamma_lut_size;
  settings.width = description.dump_width;
  settings.height = description.dump_height;
  settings.open_errno = faults.open_errno;
  settings.gamma_errno = faults.gamma_errno;
  settings.commit_errno = faults.commit_errno;
  settings.other_master = faults.not_master || faults.bus_id;
  settings.other_master_named = faults.bus_id;
  settings.pace_commits = faults.pace_commits;
  settings.output_count = static_cast<uint32_t>(description.connectors.size());
  return settings;
}

drm::Output output_of(const Connector& connector) {
  drm::Output output{};
  output.connector_type = connector.type;
  output.connector_type_id = connector.type_id;
  output.connected = connector.connected;
  output.has_encoder = connector.has_encoder;
  output.lit = connector.has_encoder && connector.connected && connector.lit;
  output.has_controls = connector.picture_controls;
  output.controls.fill(kNeutral);
  return output;
}

DeviceRecord power_on(const Description& description) {
  DeviceRecord record{};
  record.mark = drm::kRecordMark;
  record.settings = settings_of(description);
  for (size_t i = 0; i < description.connectors.size(); ++i)
    record.outputs.at(i) = output_of(description.connectors[i]);
  return record;
}

}  // namespace

void create_display(const std::filesystem::path& board_folder, const Description& description) {
  const std::filesystem::path node = drm::node(board_folder);
  std::filesystem::create_directories(node.parent_path());
  drm::create_device_file(board_folder, power_on(description));
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
