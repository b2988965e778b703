#include <algorithm>
#include <chrono>
#include <csignal>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "load/loaded_board.h"
#include "load/report.h"
#include "load/requests.h"
#include "load/runs.h"
#include "support/process_end.h"
#include "support/slack.h"

namespace load {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr size_t kActive = 8;
constexpr size_t kQueriesEach = 25;
constexpr size_t kKibibytesEach = 64;  // bound for an idle client; most of it is its stack
constexpr std::chrono::milliseconds kSlowestEnd{500};

struct Waits {
  std::vector<double> milliseconds;
  size_t unanswered = 0;

  double median() {
    if (milliseconds.empty()) return 0;
    const auto middle = milliseconds.begin() + static_cast<ptrdiff_t>(milliseconds.size() / 2);
    std::nth_element(milliseconds.begin(), middle, milliseconds.end());
    return *middle;
  }
  [[nodiscard]] double longest() const {
    return milliseconds.empty() ? 0 : *std::max_element(milliseconds.begin(), milliseconds.end());
  }
};

Waits query_at_once() {
  Waits waits;
  std::mutex mutex;
  const auto query = [&] {
    std::vector<double> own;
    try {
      Wire wire;
      while (own.size() < kQueriesEach) {
        const auto asked = Clock::now();
        ask(wire, pqclient::DocumentCommand::kQueryPq, "/csc");
        own.push_back(Milliseconds(Clock::now() - asked).count());
      }
    } catch (const std::exception&) {
      // The rest of the queries count as unanswered.
    }
    const std::lock_guard lock(mutex);
    waits.unanswered += kQueriesEach - own.size();
    waits.milliseconds.insert(waits.milliseconds.end(), own.begin(), own.end());
  };
  std::vector<std::thread> threads;
  for (size_t i = 0; i < kActive; ++i)
    threads.emplace_back(query);
  for (auto& thread : threads)
    thread.join();
  return waits;
}

// Each client gets an answer before the next one connects: the server's queue has 5 entries, and a
// client that finds it full retries only after a second.
std::vector<Wire> connect_idle(size_t clients) {
  std::vector<Wire> idle;
  for (size_t i = 0; i < clients; ++i) {
    idle.emplace_back();
    ask(idle.back(), pqclient::DocumentCommand::kQueryPq, "/csc");
  }
  return idle;
}

}  // namespace

bool run_idle(size_t clients) {
  Report report("idle");
  LoadedBoard board;
  query_at_once();  // warm-up
  const size_t idle_threads = board.settled(2).threads;
  Waits alone = query_at_once();
  const ProcessFigures before = board.settled(idle_threads);

  std::vector<Wire> idle = connect_idle(clients);
  const ProcessFigures during = board.figures();
  Waits beside = query_at_once();
  idle.clear();
  const ProcessFigures after = board.at_rest(idle_threads);

  idle = connect_idle(clients);
  const ProcessEnd daemon(board.board().daemon_pid());
  daemon.signal(SIGTERM);
  const auto end = daemon.wait(kPatience);
  board.stop();

  report.figure(clients, " idle and ", kActive, " active clients")
      .figure("a query takes ", beside.median(), " ms, at most ", beside.longest(),
              " (without them ", alone.median(), ", at most ", alone.longest(), ")")
      .figure("memory ", mebibytes(before.resident_kib), ", ", mebibytes(during.resident_kib),
              " with them, ", mebibytes(after.resident_kib), " after")
      .figure("descriptors ", before.descriptors, ", ", during.descriptors, ", ", after.descriptors)
      .figure("threads ", before.threads, ", ", during.threads, ", ", after.threads)
      .figure("ends in ", end ? end->count() : -1, " ms beside them");
  report.require(alone.unanswered + beside.unanswered == 0, "queries without an answer");
  report.require(during.threads == before.threads + clients, "not every client was connected");
  report.require(after.descriptors == before.descriptors, "descriptors were lost");
  report.require(after.threads == before.threads, "threads were left");
  report.require(!memory_is_comparable() || during.resident_kib - before.resident_kib <=
                                                static_cast<long>(clients * kKibibytesEach),
                 "an idle client takes more than 64 KiB");
  report.require(end && *end <= kSlowestEnd + kSlack, "shutdown took more than 0.5 s");
  return report.finish();
}

}  // namespace load
