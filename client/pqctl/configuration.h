// The user's list of boards: $XDG_CONFIG_HOME/pqctl/boards.ini, usually in ~/.config.
//
//   default = living-room          used when the command line names no board
//
//   [living-room]
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
  std::string file;  // where it is, or would be
  std::vector<Board> boards;
  std::string default_board;  // empty: none
};

// No file is no error: there are no boards then. Throws Error kFile when it cannot be read, kInput
// when it says something that we do not know.
Configuration read_configuration();

// The first of: --host, --board, PQCTL_HOST, PQCTL_BOARD, the file's default, this machine (as
// `adb forward` makes a board appear). --port goes over each. A listed board is recognised by its
// address, too, so that what is read-only stays so however it is named.
// Throws Error kInput for a name that is not in the list.
Board choose_board(const Options& options, const Configuration& configuration);

#endif  // PQCTL_CONFIGURATION_H_
