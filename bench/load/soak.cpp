#include <algorithm>
#include <atomic>
#include <cstdint>
#include <iostream>
#include <string>
#include <string_view>

#include "load/loaded_board.h"
#include "load/mixed_traffic.h"
#include "load/report.h"
#include "load/requests.h"
#include "load/runs.h"

namespace load {
namespace {

// The stress run uses several clients at once.
constexpr size_t kClients = 1;
constexpr size_t kMaxStep = 5'000;
constexpr long kMaxGrowth = 1024;  // KiB

// One step: the given number of requests, then quiet.
TrafficResult run_step(size_t requests, unsigned seed) {
  std::atomic<int64_t> left = static_cast<int64_t>(requests);
  return run_mixed_clients(kClients, seed, [&left] { return left-- > 0; });
}

// Interrupted uploads leave their bytes in the daemon's only collection, up to 8 MiB of them, and
// some of the requests are such uploads. So this fills it before anything is measured.
void fill_collection() {
  constexpr size_t kMoreThanIsKept = 9'000'000;
  const std::string upload = document_packet(pqclient::DocumentCommand::kUpdatePq,
                                             replace_text("/csc/cscHue", "1", kMoreThanIsKept));
  Wire wire;
  wire.send(std::string_view(upload).substr(0, upload.size() - 1));
  wire.finish_sending();
  wire.receive_rest();
}

}  // namespace

bool run_soak(size_t requests) {
  Report report("soak");
  LoadedBoard board;
  const size_t step = std::min(requests, kMaxStep);
  const size_t idle_threads = board.figures().threads;
  fill_collection();
  unsigned seed = 1;
  TrafficResult all = run_step(step, seed);
  board.remove_lut_files();
  const ProcessFigures warm = board.at_rest(idle_threads);
  ProcessFigures now = warm;
  for (size_t done = 0; done < requests && all.failures.empty(); done += step) {
    seed += kClients;
    const TrafficResult more = run_step(std::min(step, requests - done), seed);
    board.remove_lut_files();
    all.tally += more.tally;
    all.failures = more.failures;
    now = board.at_rest(idle_threads);
    std::cerr << "soak: " << warm.resident_kib << " KiB after warm-up, " << done + step
              << " requests later " << now.resident_kib << " KiB\n";
  }
  board.stop();

  const long growth = now.resident_kib - warm.resident_kib;
  report.figure(all.text())
      .figure("memory ", mebibytes(warm.resident_kib), " after ", step, " requests, ",
              mebibytes(now.resident_kib), " at the end, growth ", growth, " KiB")
      .figure("descriptors ", warm.descriptors, " and ", now.descriptors)
      .figure("threads ", warm.threads, " and ", now.threads);
  for (const auto& failure : all.failures)
    report.require(false, failure);
  report.require(!memory_is_comparable() || growth <= kMaxGrowth,
                 "memory grew by more than 1 MiB after warm-up");
  report.require(now.descriptors == warm.descriptors, "descriptors were lost");
  report.require(now.threads == warm.threads, "threads were left");
  return report.finish();
}

}  // namespace load
