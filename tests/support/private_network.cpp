#include "support/private_network.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "launch/isolation.h"

namespace board {
namespace {

constexpr const char* kMarker = "PQ_TESTS_IN_PRIVATE_NETWORK";

// Keeps the rights that come with a user namespace: the board makes another one inside it, and the
// kernel would not map the root user there without them.
constexpr const char* kRestart =
    "exec bwrap --die-with-parent --unshare-user --unshare-net --dev-bind / /"
    " --setenv PQ_TESTS_IN_PRIVATE_NETWORK 1 -- \"$0\" \"$@\"";

}  // namespace

bool in_private_network() {
  return std::getenv(kMarker) != nullptr;
}

void enter_private_network(char** argv) {
  if (in_private_network() || !private_root_obstacle().empty()) return;
  const std::string self = std::filesystem::read_symlink("/proc/self/exe");
  std::vector<const char*> command{"sh", "-c", kRestart, self.c_str()};
  for (char** argument = argv + 1; *argument != nullptr; ++argument)
    command.push_back(*argument);
  command.push_back(nullptr);
  ::execv("/bin/sh", const_cast<char**>(command.data()));
}

}  // namespace board
