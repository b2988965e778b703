// The settings of the display hardware, gathered from the board's other parts.
#ifndef BOARD_DISPLAY_SERVICE_HARDWARE_STATE_H_
#define BOARD_DISPLAY_SERVICE_HARDWARE_STATE_H_

#include <filesystem>

#include "screen/screen_state.h"

namespace board::screen {

// The state at this moment: the 3D table from the base-parameter store, the pattern from the
// activity that shows it. A missing part counts as not set.
ScreenState read_hardware_state(const std::filesystem::path& board_folder);

// Takes over only what programs set on the display device itself: picture controls and gamma table.
void update_device_settings(const std::filesystem::path& board_folder, ScreenState& state);

}  // namespace board::screen

#endif  // BOARD_DISPLAY_SERVICE_HARDWARE_STATE_H_
