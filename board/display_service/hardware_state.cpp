#include "display_service/hardware_state.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <optional>
#include <string>

#include "drm/display_state.h"
#include "properties/property_store.h"

namespace board::screen {
namespace {

namespace fs = std::filesystem;

// The connector that the picture is on, as the daemon and a viewer choose it. Null when there is no
// display.
const DisplayConnector* find_connector(const DisplayState& display, const fs::path& board) {
  const auto primary = PropertyStore(board / "properties").get("vendor.hwc.device.primary");
  return shown_connector(display, primary.value_or(""));
}

// The store counts connectors of a type from 0.
fs::path stored_table(const fs::path& board, const DisplayConnector& connector) {
  return board / "baseparameter" /
         (std::to_string(connector.type) + "-" + std::to_string(connector.type_id - 1)) /
         "cubic_lut";
}

std::optional<Lut3d> read_table(const fs::path& file) {
  if (!fs::exists(file)) return std::nullopt;
  cubic_lut_data record{};
  std::ifstream stream(file, std::ios::binary);
  const bool whole =
      static_cast<bool>(stream.read(reinterpret_cast<char*>(&record), sizeof(record)));
  std::optional<Lut3d> lut = whole ? from_record(record) : std::nullopt;
  if (!lut) {
    (void)std::fprintf(stderr,
                       "display_service: %s holds no table of %zu points, shown without it\n",
                       file.c_str(), Lut3d::kPoints);
  }
  return lut;
}

void take_settings(const DisplayConnector& connector, ScreenState& state) {
  if (connector.controls) state.controls = *connector.controls;
  state.gamma = connector.gamma;
}

std::optional<PatternColour> read_pattern(const fs::path& file) {
  std::ifstream stream(file);
  int red = 0;
  int green = 0;
  int blue = 0;
  if (!(stream >> red >> green >> blue)) return std::nullopt;
  const auto level = [](int value) { return static_cast<uint8_t>(std::clamp(value, 0, 255)); };
  return PatternColour{level(red), level(green), level(blue)};
}

}  // namespace

ScreenState read_hardware_state(const fs::path& board_folder) {
  ScreenState state;
  const DisplayState display = read_display_state(board_folder);
  if (const auto* connector = find_connector(display, board_folder)) {
    take_settings(*connector, state);
    state.lut = read_table(stored_table(board_folder, *connector));
  }
  state.pattern = read_pattern(board_folder / "screen" / "pattern");
  return state;
}

void update_device_settings(const fs::path& board_folder, ScreenState& state) {
  const DisplayState display = read_display_state(board_folder);
  if (const auto* connector = find_connector(display, board_folder)) {
    take_settings(*connector, state);
  }
}

}  // namespace board::screen
