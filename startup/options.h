// The command line. The daemon acts on none of the settings, only on the error: they are accepted
// for start scripts that are shared with other tools of the board.
#ifndef STARTUP_OPTIONS_H_
#define STARTUP_OPTIONS_H_

#include <cstdint>
#include <string_view>

struct Options {
  int32_t mode = -1;
  int32_t width = 1920;     // pixels
  int32_t height = 1080;    // pixels
  int32_t frame_rate = 10;  // 1..100
  int32_t mmap_number = 4;  // 4..200
  int32_t device_id = 0;
  int32_t enable_rtsp = 0;  // 0 or 1
  // These two point into the command line or to a constant.
  std::string_view stream_device;
  std::string_view iq_file;
};

// Parses the command line and clamps values that are out of range. Unknown options are reported on
// standard error and skipped.
// Returns false when enable_rtsp is neither 0 nor 1: the daemon must not start then.
[[nodiscard]] bool parse_options(int argc, char* argv[], Options& options);

#endif  // STARTUP_OPTIONS_H_
