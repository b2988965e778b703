// load: tests the daemon on a simulated board with many clients, malformed requests and sudden
// kills.
// Everything runs in a private network with only a loopback interface, and finishes by itself.
#include <CLI/CLI.hpp>

#include <chrono>
#include <exception>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "launch/isolation.h"
#include "load/runs.h"
#include "support/private_network.h"

namespace {

constexpr int kSkipped = 77;  // CTest reports it as skipped

struct Run {
  const char* name;
  const char* help;
  const char* what;  // the unit of --count
  size_t count;      // of the full run
  std::function<bool(size_t)> run;
};

const std::vector<Run>& runs() {
  static const std::vector<Run> all = {
      {"idle", "idle clients beside active ones", "idle clients", 1'000, load::run_idle},
      {"connections", "short connections one after another", "connections", 300'000,
       load::run_connections},
      {"slow", "answers to slow readers", "answers", 400, load::run_slow_readers},
      {"descriptors", "more clients than descriptors", "clients", 200, load::run_few_descriptors},
      {"stress", "every kind of request by 8 clients at once", "seconds", 120,
       [](size_t seconds) { return load::run_stress(std::chrono::seconds(seconds)); }},
      {"soak", "what very many requests leave behind", "requests", 50'000, load::run_soak},
      {"kill", "SIGKILL in the middle of changes", "kills", 1'000, load::run_kills},
      {"mutate", "damaged requests", "requests", 10'000, load::run_mutations},
  };
  return all;
}

int run(int argc, char** argv) {
  CLI::App app("Puts load on the PQ tool server on a simulated board.", "load");
  app.require_subcommand(1);
  bool kept = true;
  size_t count = 0;
  for (const Run& each : runs()) {
    auto* command = app.add_subcommand(each.name, each.help);
    command
        ->add_option("--count", count,
                     std::string(each.what) + " (default: " + std::to_string(each.count) + ")")
        ->check(CLI::Range(size_t{1}, size_t{1'000'000}));
    command->callback([&] { kept = each.run(count > 0 ? count : each.count); });
  }
  app.add_subcommand("all", "All of these in full, one after another")->callback([&] {
    for (const Run& each : runs())
      kept = each.run(each.count) && kept;
  });
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  }
  return kept ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  board::enter_private_network(argv);
  if (!board::in_private_network()) {
    std::cerr << "load: no private network here: " << board::private_root_obstacle() << '\n';
    return kSkipped;
  }
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "load: " << error.what() << '\n';
    return 1;
  }
}
