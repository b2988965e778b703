// The user's list of boards: $XDG_CONFIG_HOME/pqctl/boards.ini, usually in ~/.config.
//
//   default = living-room          used when the command line names no board
//
//   default = living-room          used if the command line names no board
//   host = 192.0.2.7               HOST or HOST:PORT
//   timeout = 8                    seconds, as --timeout
//   read-only = true               no command may change anything on it
#ifndef PQCTL_CONFIGURATION_H_
#define PQCTL_CONFIGURATION_H_

#include <optional>
#include <string>
#include <vector>

#include "options.h"
#include "pqclient/connection.h"

struct Board {
  std::string name;  // empty: not in the list
  pqclient::Address address;
  std::optional<double> timeout_seconds;
  bool is_read_only = false;

  // "living-room (192.0.2.7:5543)", or the address alone
  [[nodiscard]] std::string text() const;
};

struct Configuration {
  std::string file;  // its path, also if it does not exist
  std::vector<Board> boards;
  std::string default_board;  // empty: none
};

// A missing file is not an error: the list is then empty. Throws Error kFile if it cannot be read,
// kInput if it has an unknown or invalid setting.
Configuration read_configuration();

// The first of: --host, --board, PQCTL_HOST, PQCTL_BOARD, the file's default, this machine (where
// `adb forward` makes a board appear). --port overrides the port of each. A listed board is also
// recognised by its address, so a read-only board is protected however it is given.
// Throws Error kInput for a name that is not listed.
Board choose_board(const Options& options, const Configuration& configuration);

#endif  // PQCTL_CONFIGURATION_H_
