// The command line. Of the settings, nothing in the daemon reads any but the error: they are kept
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
  int32_t enable_rtsp = 0;         // 0 or 1
  std::string_view stream_device;  // these two: of the command line, or constant
  std::string_view iq_file;
};

// Parses the command line, clamping what is out of range. Unknown options are complained about on
// standard error and skipped.
// Returns false when enable_rtsp is neither 0 nor 1: the daemon must not start then.
bool parse_options(int argc, char* argv[], Options& options);

#endif  // STARTUP_OPTIONS_H_
