// The subcommands of pqctl. Each add_... function describes one on the command line and hangs the
// code behind it into its callback, which runs while the command line is parsed and may throw
// pqclient::Error. What a command was asked for goes to standard output, everything else to
// standard error.
#ifndef PQCTL_COMMANDS_H_
#define PQCTL_COMMANDS_H_

#include <CLI/CLI.hpp>
#include <optional>

#include "pqclient/tuning_client.h"

// Options that stand before or after any subcommand. Outlives the parsing.
struct GlobalOptions {
  pqclient::Address address;
  std::optional<double> timeout_seconds;  // in place of every default time-out
  bool json = false;                      // bare JSON on standard output

  [[nodiscard]] pqclient::TuningClient client() const;
};

void add_get(CLI::App& app, const GlobalOptions& options);

#endif  // PQCTL_COMMANDS_H_
