#include "load/loaded_board.h"
#include "load/mixed_traffic.h"
#include "load/report.h"
#include "load/runs.h"

namespace load {

// The daemon's waits are shortened, but still long enough for other clients to act in between and
// for the display service to write its dumps.
bool run_stress(std::chrono::seconds time) {
  constexpr size_t kClients = 8;
  constexpr unsigned kHurry = 10;
  constexpr unsigned kSeed = 1;
  LoadedBoard board({.hurry = kHurry});
  const auto end = std::chrono::steady_clock::now() + time;
  const TrafficResult traffic =
      run_mixed_clients(kClients, kSeed, [end] { return std::chrono::steady_clock::now() < end; });
  board.stop();

  Report report("stress");
  report.figure(kClients, " clients for ", time.count(), " s").figure(traffic.text());
  for (const auto& failure : traffic.failures)
    report.require(false, failure);
  return report.finish();
}

}  // namespace load
