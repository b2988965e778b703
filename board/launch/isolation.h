// How a daemon with fixed absolute paths meets a board's own files.
#ifndef BOARD_LAUNCH_ISOLATION_H_
#define BOARD_LAUNCH_ISOLATION_H_

#include <string>
#include <vector>

#include "launch/state_folder.h"

namespace board {

enum class Isolation {
  kAuto,       // a private root where this machine allows it, else the preloaded mapping
  kNamespace,  // a private root made with bubblewrap, with its own processes
  kPreload,    // a library inside the process maps the board's paths; the rest of the machine shows
};

// Empty when a private root can be made here, else what bubblewrap or the kernel said against it.
// Tried once a process; any thread.
const std::string& private_root_obstacle();

// What kAuto means on this machine.
Isolation choose_isolation(Isolation wanted);

// The command line of bubblewrap up to the program: a root that holds the mounts, the machine's
// libraries and programs and this build, the last three read-only. The network is the caller's.
// extra: further files or folders to show, read-only, at their own paths.
std::vector<std::string> private_root_command(const std::vector<Mount>& mounts,
                                              const std::vector<std::filesystem::path>& extra);

// The mounts as libboardpaths.so reads them from BOARD_PATHS: "/data=/host/data:...".
// Throws std::runtime_error when a folder's name holds a colon.
std::string path_mapping(const std::vector<Mount>& mounts);

}  // namespace board

#endif  // BOARD_LAUNCH_ISOLATION_H_
