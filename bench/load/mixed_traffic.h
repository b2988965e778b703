// Several mixed clients at once, each on a thread of its own.
#ifndef BENCH_LOAD_MIXED_TRAFFIC_H_
#define BENCH_LOAD_MIXED_TRAFFIC_H_

#include <functional>
#include <string>
#include <vector>

#include "load/mixed_client.h"

namespace load {

struct TrafficResult {
  Tally tally;
  std::vector<std::string> failures;  // error texts; a client stops at its first

  // "5000 requests: 1800 queries ..."
  [[nodiscard]] std::string text() const;
};

// Each client continues while `more()` returns true, which is called on all their threads.
TrafficResult run_mixed_clients(size_t clients, unsigned seed, const std::function<bool()>& more);

}  // namespace load

#endif  // BENCH_LOAD_MIXED_TRAFFIC_H_
