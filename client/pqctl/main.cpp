// pqctl: reads and changes the picture quality of a board from the command line.
#include <CLI/CLI.hpp>
#include <chrono>
#include <exception>
#include <iostream>

#include "commands.h"
#include "exit_status.h"
#include "pqclient/error.h"

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  pqctl get csc\n"
    "  pqctl --host 192.0.2.7 get gamma/gammaTab_R/512\n"
    "  pqctl get dci --json\n";

void add_global_options(CLI::App& app, GlobalOptions& options) {
  app.add_option("--host", options.address.host, "Name or address of the board")
      ->envname("PQCTL_HOST")
      ->capture_default_str();
  app.add_option("--port", options.address.port, "TCP port of the server")
      ->check(CLI::Range(1, 65535))
      ->capture_default_str();
  app.add_option("--timeout", options.timeout_seconds,
                 "Seconds to wait for the connection and for each answer")
      ->check(CLI::Range(0.001, 3600.0));
  app.add_flag("--json", options.json, "Print the bare value as JSON");
}

ExitStatus run(int argc, char** argv) {
  GlobalOptions options;
  CLI::App app("Reads and changes the picture quality of a board while the picture is on screen.",
               "pqctl");
  app.set_version_flag("--version", PQCTL_VERSION);
  app.footer(std::string(kExamples) + "\n" + kExitStatusHelp);
  app.require_subcommand(1);
  app.fallthrough();  // global options may stand after the subcommand, too
  add_global_options(app, options);
  add_get(app, options);
  try {
    app.parse(argc, argv);
    if (!std::cout.flush()) {
      throw pqclient::Error(pqclient::ErrorKind::kFile, "cannot write to standard output");
    }
  } catch (const CLI::ParseError& error) {
    // The library prints help and version, too, by way of this exception.
    return app.exit(error) == 0 ? ExitStatus::kOk : ExitStatus::kUsage;
  } catch (const pqclient::Error& error) {
    std::cerr << "pqctl: " << error.what();
    if (error.kind() == pqclient::ErrorKind::kBadAnswer) {
      std::cerr << " (board: " << options.address.text() << ")";
    }
    std::cerr << '\n';
    return exit_status_of(error.kind());
  }
  return ExitStatus::kOk;
}

}  // namespace

pqclient::TuningClient GlobalOptions::client() const {
  pqclient::Timeouts timeouts;
  if (timeout_seconds) {
    const auto time = std::chrono::ceil<std::chrono::milliseconds>(
        std::chrono::duration<double>(*timeout_seconds));
    timeouts = {time, time, time};
  }
  return pqclient::TuningClient(address, timeouts, "pqctl " PQCTL_VERSION);
}

int main(int argc, char** argv) {
  try {
    return static_cast<int>(run(argc, argv));
  } catch (const std::exception& error) {
    std::cerr << "pqctl: " << error.what() << '\n';
    return static_cast<int>(ExitStatus::kUsage);
  }
}
