// The simulated display device as seen from outside: setting it up when a board boots, and reading
// what programs have made of it, while they run or afterwards.
//
// Functions may be called from any thread and process; none keeps the device locked.
#ifndef BOARD_DRM_DISPLAY_STATE_H_
#define BOARD_DRM_DISPLAY_STATE_H_

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "colour/picture_settings.h"
#include "description/description.h"

namespace board {

struct DisplayConnector {
  std::string name;  // as in HDMI-A-1
  uint32_t connector_id = 0;
  uint32_t type = 0;     // DRM connector type code
  uint32_t type_id = 0;  // from 1 within the type
  bool connected = false;
  uint32_t crtc_id = 0;  // 0: nothing is shown there; then all that follows is neutral
  uint32_t width = 0;
  uint32_t height = 0;
  std::optional<PictureControls> controls;  // none: the connector has no such properties
  GammaTable gamma;
  size_t gamma_reserved_set = 0;  // table entries whose reserved word is not 0, as it has to be
};

struct DisplayState {
  std::vector<DisplayConnector> connectors;  // in the order of the board's description
  uint64_t commits = 0;                      // successful atomic commits
  uint64_t property_writes = 0;              // successful single property calls
  size_t blobs = 0;                          // living property blobs
};

// Makes the display device of a board: the node's stand-in and the state at power-on, in place of
// any older state. To be called before a program of the board starts. Throws std::system_error or
// std::filesystem::filesystem_error when the folder can't be written.
void create_display(const std::filesystem::path& board_folder, const Description& description);

// The folder to show to the board's programs as /dev/dri. It is empty when the board has no
// device.
std::filesystem::path display_node_folder(const std::filesystem::path& board_folder);

// Throws std::runtime_error (std::system_error included) when there is no readable state.
DisplayState read_display_state(const std::filesystem::path& board_folder);

// The connector whose picture a viewer looks at: the first connected one that is called `primary`
// (by its full name or its type's name); else the first connected built-in panel; else the first
// connected one. Null when none is connected.
const DisplayConnector* shown_connector(const DisplayState& state, std::string_view primary);

// The state for people, some lines of text. Throws as read_display_state().
std::string describe_display(const std::filesystem::path& board_folder);

}  // namespace board

#endif  // BOARD_DRM_DISPLAY_STATE_H_
