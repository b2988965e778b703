#include <algorithm>
#include <atomic>
#include <iostream>
#include <map>
#include <string>
#include <string_view>

#include "load/loaded_board.h"
#include "load/mixed_traffic.h"
#include "load/report.h"
#include "load/requests.h"
#include "load/runs.h"

namespace load {
namespace {

// Several at once are the stress run's: what eight happen to hold at the same time goes on rising
// for hours, and hides what the daemon keeps.
constexpr size_t kClients = 1;
// For the same reason: the C library has up to 8 arenas a core, and each keeps its own high-water
// mark from the first time that a large document is handled in it.
const std::map<std::string, std::string> kOneArena = {{"MALLOC_ARENA_MAX", "1"}};
constexpr size_t kLargestStep = 5'000;
constexpr long kMostGrowth = 1024;  // KiB
// What an allocator keeps at rest goes up and down by megabytes with the last requests' order of
// events, so it is compared with the highest of several rests. A short run sees too few of them: it
// shows that neither descriptors nor threads are left over, not how memory goes.
constexpr size_t kWarmingRests = 10;
constexpr size_t kWarm = 1'000;

// One step: so many requests, then quiet.
TrafficResult run_step(size_t requests, unsigned seed) {
  std::atomic<size_t> left = requests;
  return run_mixed_clients(kClients, seed, [&left] {
    size_t now = left;
    while (now > 0 && !left.compare_exchange_weak(now, now - 1)) {
    }
    return now > 0;
  });
}

// Interrupted uploads leave their bytes in the daemon's one collection, up to 8 MiB of them; some
// of the requests are such uploads. So it is filled before anything is measured.
void fill_collection() {
  constexpr size_t kMoreThanIsKept = 9'000'000;
  const std::string upload = document_packet(pqclient::DocumentCommand::kWritePq,
                                             replace_text("/csc/cscHue", "1", kMoreThanIsKept));
  Wire wire;
  wire.send(std::string_view(upload).substr(0, upload.size() - 1));
  wire.finish_sending();
  wire.receive_rest();
}

}  // namespace

bool run_soak(size_t requests) {
  Report report("soak");
  LoadedBoard board({.environment = kOneArena});
  const size_t step = std::min(requests, kLargestStep);
  const size_t idle_threads = board.figures().threads;
  fill_collection();
  unsigned seed = 0;
  TrafficResult all;
  const auto figures_after = [&](size_t some_requests) {
    const TrafficResult more = run_step(some_requests, seed += kClients);
    board.remove_lut_files();
    all.tally += more.tally;
    all.failures.insert(all.failures.end(), more.failures.begin(), more.failures.end());
    return board.settled(idle_threads);
  };
  ProcessFigures warm;
  for (size_t rest = 0; rest < kWarmingRests && all.failures.empty(); ++rest) {
    const ProcessFigures now = figures_after(step / kWarmingRests);
    if (now.resident_kib > warm.resident_kib) warm = now;
  }
  ProcessFigures now = warm;
  for (size_t done = 0; done < requests && all.failures.empty(); done += step) {
    now = figures_after(std::min(step, requests - done));
    std::cerr << "soak: " << warm.resident_kib << " KiB after warm-up, " << done + step
              << " requests later " << now.resident_kib << " KiB\n";
  }
  board.stop();

  const long growth = now.resident_kib - warm.resident_kib;
  report.figure(all.text())
      .figure("memory ", mebibytes(warm.resident_kib), " at most in ", step,
              " requests of warm-up, ", mebibytes(now.resident_kib), " at the end, growth ", growth,
              " KiB")
      .figure("descriptors ", warm.descriptors, " and ", now.descriptors)
      .figure("threads ", warm.threads, " and ", now.threads);
  for (const auto& failure : all.failures)
    report.require(false, failure);
  report.require(!memory_is_comparable() || step < kWarm || growth <= kMostGrowth,
                 "memory grew by more than 1 MiB after warm-up");
  report.require(now.descriptors == warm.descriptors, "descriptors were lost");
  report.require(now.threads == warm.threads, "threads stayed");
  return report.finish();
}

}  // namespace load
