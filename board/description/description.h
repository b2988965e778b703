// The hardware of a simulated board, read from a small JSON file (board/boards/*.json).
//
// Every part of the simulated board reads the same description; docs/board.md explains each key.
// A key that is absent has the value a plain, healthy panel would have.
#ifndef BOARD_DESCRIPTION_DESCRIPTION_H_
#define BOARD_DESCRIPTION_DESCRIPTION_H_

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace board {

inline constexpr size_t kMaxConnectors = 8;
inline constexpr uint32_t kMaxGammaTable = 4096;  // entries
inline constexpr uint32_t kMaxData = 1'000'000;   // MiB

struct Connector {
  uint32_t type = 14;    // DRM connector type code (drm_mode.h); in the file its name or the number
  uint32_t type_id = 1;  // counts from 1 within the type; given by the order in the file
  bool connected = true;
  bool has_encoder = true;
  bool lit = true;               // its encoder is routed to a CRTC
  bool picture_controls = true;  // has brightness, contrast, saturation and hue properties

  bool operator==(const Connector&) const = default;
};

// Faults of the simulated display device. An errno of 0 means that the call works.
struct Faults {
  int open_errno = 0;       // opening the display device
  bool no_device = false;   // there is no display device at all
  bool not_master = false;  // another program is DRM master: writes answer EACCES
  bool bus_id = false;      // that program has set a bus id: opening by name passes the device over
  int gamma_errno = 0;      // setting GAMMA_LUT
  int commit_errno = 0;     // every atomic commit
  bool pace_commits = false;  // two nonblocking commits within one frame: the second answers EBUSY

  bool operator==(const Faults&) const = default;
};

enum class Engine {
  kComplete,    // all five entry points
  kMissing,     // no library
  kWithoutGet,  // no hwpq_lite_get_3dlut
  kRunFails,    // hwpq_lite_run answers a negative result
  kRunHangs,    // hwpq_lite_run never returns
};

struct Description {
  std::string name;                               // the file's name without .json
  std::string about;                              // what it is there for, one line for people
  std::string platform = "qxt200";                // ro.board.platform
  std::map<std::string, std::string> properties;  // set before the daemon starts
  uint16_t store_version[2] = {2, 0};             // of the base-parameter store
  bool store_empty = false;                       // the store holds no records: every getter fails
  std::vector<Connector> connectors = {Connector{}};  // one connected eDP panel
  uint32_t gamma_lut_size = 1024;  // entries the CRTC takes; 0: no GAMMA_LUT property
  uint32_t dump_width = 1920;      // size and format of the picture dumps
  uint32_t dump_height = 1080;
  std::string dump_format_in = "nv12";
  std::string dump_format_out = "rgb";
  Engine engine = Engine::kComplete;
  uint32_t data_size = 16384;  // of the partition /data, in MiB, and what is free of it
  uint32_t data_free = 8192;
  Faults faults;

  bool operator==(const Description&) const = default;
};

// Reads a description. Throws std::runtime_error that names the file, the key, its value and what
// is allowed there: a board that is described wrongly must not start.
Description read_description(const std::filesystem::path& file);

// The name users give a connector: its type's name, "-", its type id, as in HDMI-A-1. Types that
// have no name there are called by their code, as in type20-1.
std::string connector_name(uint32_t type, uint32_t type_id);

// The text of a file that read_description() reads back alike, every key written out.
std::string to_json(Description description);

// Where a running board keeps its state: the folder named by the environment variable BOARD_DIR,
// "/board" when unset. Every part of the simulated board finds its files below it:
//   description.json        a copy of the board's description
//   properties/NAME         one file a system property, holding its value without a newline
//   baseparameter/          the base-parameter store
//   drm/                    the display device's state
//   screen/                 what the display service shows
//   data_space              size of /data and what is free of it, in MiB
//   calls                   one line a program that the daemon started, its arguments
std::filesystem::path board_folder();

}  // namespace board

#endif  // BOARD_DESCRIPTION_DESCRIPTION_H_
