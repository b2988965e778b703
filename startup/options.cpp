#include "startup/options.h"

#include <getopt.h>

#include <array>
#include <cstdlib>

#include "base/log.h"

namespace {

constexpr char kShortOptions[] = "s:r:i:m:Dd:w:h:n:f:";
constexpr char kDefaultIqFile[] = "/vendor/etc/camera/qxisp2";

constexpr int32_t kMinMmapNumber = 4;
constexpr int32_t kMaxMmapNumber = 200;
constexpr int32_t kMaxFrameRate = 100;

// The long forms of width, height and help are declared without an argument, and help does
// what height does: start scripts may pass it without ending the daemon.
constexpr std::array<option, 11> kLongOptions = {{
    {"stream_dev", required_argument, nullptr, 's'},
    {"enable_rtsp", required_argument, nullptr, 'r'},
    {"iqfile", required_argument, nullptr, 'i'},
    {"mode", required_argument, nullptr, 'm'},
    {"width", no_argument, nullptr, 'w'},
    {"height", no_argument, nullptr, 'h'},
    {"device_id", required_argument, nullptr, 'd'},
    {"mmap_buffer", required_argument, nullptr, 'n'},
    {"frame_rate", required_argument, nullptr, 'f'},
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
}};

// As atoi, 0 for an absent argument.
int32_t number(const char* argument) {
  return argument == nullptr ? 0 : static_cast<int32_t>(std::strtol(argument, nullptr, 10));
}

int32_t clamp_mmap_number(int32_t value) {
  if (value >= kMinMmapNumber && value <= kMaxMmapNumber) return value;
  pq::log_info()("mmap Number out of range[4,200], use default 4\n");
  return kMinMmapNumber;
}

int32_t clamp_frame_rate(int32_t value) {
  if (value == 0) value = 1;
  if (value < 0 || value > kMaxFrameRate) value = kMaxFrameRate;
  pq::log_info()("set framerate:%u\n", static_cast<unsigned>(value));
  return value;
}

bool accept_enable_rtsp(int32_t value) {
  if (value == 0 || value == 1) return true;
  pq::log_error()("enable_rtsp arg|only equals 0 or 1\n");
  return false;
}

}  // namespace

bool parse_options(int argc, char* argv[], Options& options) {
  bool valid = true;
  int letter = 0;
  while ((letter = getopt_long(argc, argv, kShortOptions, kLongOptions.data(), nullptr)) != -1) {
    switch (letter) {
      case 's':
        options.stream_device = optarg;
        break;
      case 'r':
        options.enable_rtsp = number(optarg);
        if (!accept_enable_rtsp(options.enable_rtsp)) valid = false;
        break;
      case 'i':
        options.iq_file = optarg;
        break;
      case 'm':
        options.mode = number(optarg);
        break;
      case 'w':
        options.width = number(optarg);
        break;
      case 'h':
        options.height = number(optarg);
        break;
      case 'd':
        options.device_id = number(optarg);
        break;
      case 'n':
        options.mmap_number = clamp_mmap_number(number(optarg));
        break;
      case 'f':
        options.frame_rate = clamp_frame_rate(number(optarg));
        break;
      default:  // D, and what getopt has complained about
        break;
    }
  }
  if (options.iq_file.empty()) options.iq_file = kDefaultIqFile;
  return valid;
}
