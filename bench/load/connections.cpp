#include <chrono>

#include "load/loaded_board.h"
#include "load/report.h"
#include "load/requests.h"
#include "load/runs.h"

namespace load {
namespace {

constexpr size_t kQueryEvery = 100;
constexpr size_t kWarmUp = 500;
constexpr long kMaxGrowth = 200;  // KiB

// Each connection leaves its port taken for a minute; 28,000 ports times 200 addresses are enough.
uint32_t source_address(size_t number) {
  constexpr uint32_t kAddresses = 200;
  return kLoopback + static_cast<uint32_t>(number % kAddresses);
}

// Waits for an orderly close: by then the daemon has handled all earlier connections, too, so none
// has to queue.
void connect_once(size_t number) {
  Wire wire(source_address(number));
  if (number % 2 == 1) return wire.reset();
  if (number % kQueryEvery == 0) ask(wire, pqclient::DocumentCommand::kQueryPq, "/csc");
  wire.finish_sending();
  wire.receive_rest();
}

}  // namespace

bool run_connections(size_t connections) {
  Report report("connections");
  LoadedBoard board;
  const size_t idle_threads = board.figures().threads;
  for (size_t i = 0; i < kWarmUp; ++i)
    connect_once(i);
  const ProcessFigures before = board.at_rest(idle_threads);

  const auto start = std::chrono::steady_clock::now();
  for (size_t i = 0; i < connections; ++i)
    connect_once(i);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  const ProcessFigures after = board.at_rest(idle_threads);
  board.stop();

  const long growth = after.resident_kib - before.resident_kib;
  report.figure(connections, " connections one after another in ", time.count(), " s")
      .figure(connections / kQueryEvery, " queries answered")
      .figure("memory ", mebibytes(before.resident_kib), " and ", mebibytes(after.resident_kib),
              ", growth ", growth, " KiB")
      .figure("descriptors ", before.descriptors, " and ", after.descriptors)
      .figure("threads ", before.threads, " and ", after.threads);
  report.require(!memory_is_comparable() || growth <= kMaxGrowth,
                 "memory grew by more than 200 KiB");
  report.require(after.descriptors == before.descriptors, "descriptors were lost");
  report.require(after.threads == before.threads, "threads stayed");
  return report.finish();
}

}  // namespace load
