// Gives a daemon with fixed absolute paths a board's own files.
#ifndef BOARD_LAUNCH_ISOLATION_H_
#define BOARD_LAUNCH_ISOLATION_H_

#include <filesystem>
#include <string>
#include <vector>

#include "launch/state_folder.h"

namespace board {

enum class Isolation {
  kAuto,       // a private root where this machine allows it, else proot
  kNamespace,  // a private root made with bubblewrap, with its own processes
  kProot,      // proot translates the paths of each system call; the rest of the machine shows
};

// A command line that runs the program behind it with the board's paths.
struct Container {
  std::vector<std::string> command;
  // Makes the command end everything that it runs, at once. 0: the end of its first process does.
  int end_signal;
};

// Empty when a private root can be made here, else what bubblewrap or the kernel said against it.
// Tried once a process; any thread.
const std::string& private_root_obstacle();

// Resolves kAuto on this machine. Throws std::runtime_error when neither way works here.
Isolation choose_isolation(Isolation wanted);

// The mounts, in a container of the kind; never kAuto. The network is the caller's. In a private
// root there are beside them this machine's libraries and programs and `extra`, files or folders at
// their own paths, all read-only. Throws std::runtime_error when proot cannot show a folder because
// its name holds a colon.
Container make_container(Isolation isolation, const std::vector<Mount>& mounts,
                         const std::vector<std::filesystem::path>& extra);

}  // namespace board

#endif  // BOARD_LAUNCH_ISOLATION_H_
