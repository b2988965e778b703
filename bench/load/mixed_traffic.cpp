#include "load/mixed_traffic.h"

#include <exception>
#include <mutex>
#include <sstream>
#include <thread>

namespace load {

std::string TrafficResult::text() const {
  std::ostringstream text;
  text << tally.total() << " requests, all " << tally.answers
       << " queries in them answered: " << tally.of(Kind::kQuery) + tally.of(Kind::kAipqQuery)
       << " alone, " << tally.of(Kind::kChange) + tally.of(Kind::kAipqChange) << " after changes, "
       << tally.of(Kind::kLongChange) << " after long ones; "
       << tally.of(Kind::kPattern) + tally.of(Kind::kPatternMode) << " patterns and modes; "
       << tally.dumps_received << " of " << tally.of(Kind::kDump) << " dumps; "
       << tally.of(Kind::kHalfDocument) << " half documents, " << tally.of(Kind::kNonsense)
       << " of nonsense, " << tally.of(Kind::kLeave) << " left early";
  return text.str();
}

TrafficResult run_mixed_clients(size_t clients, unsigned seed, const std::function<bool()>& more) {
  TrafficResult result;
  std::mutex mutex;
  const auto run = [&](unsigned own_seed) {
    MixedClient client(own_seed);
    std::string failure;
    try {
      while (more())
        client.make_request();
    } catch (const std::exception& error) {
      failure = error.what();
    }
    const std::lock_guard lock(mutex);
    result.tally += client.tally();
    if (!failure.empty()) result.failures.push_back(failure);
  };
  std::vector<std::thread> threads;
  for (size_t i = 0; i < clients; ++i)
    threads.emplace_back(run, seed + static_cast<unsigned>(i));
  for (auto& thread : threads)
    thread.join();
  return result;
}

}  // namespace load
