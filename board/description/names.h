// The words that a board description uses for codes.
#ifndef BOARD_DESCRIPTION_NAMES_H_
#define BOARD_DESCRIPTION_NAMES_H_

#include <cerrno>
#include <string_view>
#include <utility>

#include "description/description.h"

namespace board {

// Names as DRM users write them; the codes are the kernel's (drm_mode.h).
inline constexpr std::string_view kConnectorTypes[] = {
    "unknown",   "VGA", "DVI-I",  "DVI-D",  "DVI-A", "composite", "s-video", "LVDS", "component",
    "9-pin DIN", "DP",  "HDMI-A", "HDMI-B", "TV",    "eDP",       "Virtual", "DSI",  "DPI"};

template <typename Value>
using Name = std::pair<std::string_view, Value>;

// A fault that is off has no name, and is left out of a description.
inline constexpr Name<int> kErrnoNames[] = {
    {"EACCES", EACCES}, {"EBUSY", EBUSY},   {"EINVAL", EINVAL}, {"EIO", EIO},
    {"ENODEV", ENODEV}, {"ENOENT", ENOENT}, {"ENOMEM", ENOMEM}, {"ENOSPC", ENOSPC}};

inline constexpr Name<Engine> kEngineNames[] = {{"complete", Engine::kComplete},
                                                {"missing", Engine::kMissing},
                                                {"without-get", Engine::kWithoutGet},
                                                {"run-fails", Engine::kRunFails},
                                                {"run-hangs", Engine::kRunHangs}};

inline constexpr Name<std::string_view> kDumpFormats[] = {
    {"rgba", "rgba"}, {"bgr", "bgr"},   {"nv12", "nv12"}, {"nv16", "nv16"},
    {"nv24", "nv24"}, {"nv15", "nv15"}, {"rgb", "rgb"}};

}  // namespace board

#endif  // BOARD_DESCRIPTION_NAMES_H_
