// Where the display device lives below a board's folder, and the file that holds its state.
//
//   drm/state        the whole state, one binary image; replaced by rename only, so that a reader
//                    needs no lock and a writer that is killed leaves the former state behind
//   drm/dri/card0    the device node's stand-in, an empty file; programs find it in /dev/dri
#ifndef BOARD_DRM_STATE_FILE_H_
#define BOARD_DRM_STATE_FILE_H_

#include <cstdint>
#include <filesystem>
#include <vector>

#include "drm/device_state.h"

namespace board::drm {

// The folder that the board's programs see as /dev/dri.
std::filesystem::path node_folder(const std::filesystem::path& board_folder);
std::filesystem::path node(const std::filesystem::path& board_folder);

// The image is for one machine and one build: native byte order, no conversion between versions.
std::vector<uint8_t> encode(const DeviceState& state);
// Throws std::runtime_error when the bytes are no such image.
DeviceState decode(const std::vector<uint8_t>& image);

// Both throw std::system_error with the errno of what failed. A caller that stores what it loaded
// must keep other writers away meanwhile (preload/session.h).
std::vector<uint8_t> read_image(const std::filesystem::path& board_folder);
void write_image(const std::filesystem::path& board_folder, const std::vector<uint8_t>& image);

}  // namespace board::drm

#endif  // BOARD_DRM_STATE_FILE_H_
