#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <exception>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "load/loaded_board.h"
#include "load/report.h"
#include "load/requests.h"
#include "load/runs.h"

namespace load {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr size_t kSlowReaders = 8;
constexpr int kSmallBuffer = 4096;  // makes the daemon wait for the reader
constexpr size_t kPiece = 8192;     // at a time
constexpr auto kPause = 20ms;       // between pieces: an answer of 270 KB takes a second

std::string question() {
  return document_packet(pqclient::DocumentCommand::kQueryAipq, query_text("/acm"));
}

// The bytes of the whole answer, read at once.
std::string quick_answer() {
  Wire wire;
  wire.send(question());
  std::string bytes = wire.receive(sizeof(pqclient::DocumentHeader));
  pqclient::DocumentHeader header{};
  std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char*>(&header));
  return bytes + wire.receive(pqclient::reply_bytes_after(header));
}

// The same, read piece by piece.
std::string slow_answer(Wire& wire, size_t size) {
  wire.send(question());
  std::string bytes;
  while (bytes.size() < size) {
    std::this_thread::sleep_for(kPause);
    bytes += wire.receive(std::min(kPiece, size - bytes.size()));
  }
  return bytes;
}

// Clients that query and read slowly, each on a thread of its own, until together they have the
// given number of answers.
class SlowReaders {
 public:
  SlowReaders(size_t answers, const std::string& expected)
      : expected_(expected), left_(static_cast<int64_t>(answers)) {
    for (size_t i = 0; i < kSlowReaders; ++i)
      threads_.emplace_back([this] { read(); });
  }

  [[nodiscard]] bool are_done() const { return running_ == 0; }

  // Waits for them. Returns error texts; a reader stops at its first failure.
  const std::vector<std::string>& join() {
    threads_.clear();
    return failures_;
  }

 private:
  void read() {
    try {
      Wire wire(kLoopback, kSmallBuffer);
      while (left_-- > 0) {
        if (slow_answer(wire, expected_.size()) != expected_) throw std::runtime_error("garbled");
      }
    } catch (const std::exception& error) {
      const std::lock_guard lock(mutex_);
      failures_.emplace_back(error.what());
    }
    --running_;
  }

  const std::string& expected_;
  std::atomic<int64_t> left_;
  std::atomic<size_t> running_ = kSlowReaders;
  std::mutex mutex_;
  std::vector<std::string> failures_;
  std::vector<std::jthread> threads_;  // last: they use the others
};

// Measurements of another client meanwhile.
struct Beside {
  std::vector<Clock::duration> waits;  // sorted
  long most_memory = 0;                // KiB

  [[nodiscard]] Clock::duration median() const { return waits[waits.size() / 2]; }
  [[nodiscard]] Clock::duration longest() const { return waits.back(); }
};

Beside query_beside(const SlowReaders& readers, const LoadedBoard& board) {
  Beside beside;
  Wire wire;
  do {
    const auto asked = Clock::now();
    ask(wire, pqclient::DocumentCommand::kQueryPq, "/csc");
    beside.waits.push_back(Clock::now() - asked);
    beside.most_memory = std::max(beside.most_memory, board.figures().resident_kib);
    std::this_thread::sleep_for(10ms);
  } while (!readers.are_done());
  std::ranges::sort(beside.waits);
  return beside;
}

int64_t milliseconds(Clock::duration time) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

}  // namespace

bool run_slow_readers(size_t queries) {
  Report report("slow");
  LoadedBoard board;
  const size_t idle_threads = board.figures().threads;
  const std::string expected = quick_answer();
  const ProcessFigures before = board.settled(idle_threads);

  const auto start = Clock::now();
  SlowReaders readers(queries, expected);
  const Beside beside = query_beside(readers, board);
  const std::vector<std::string>& failures = readers.join();
  const Clock::duration slow = (Clock::now() - start) * kSlowReaders / queries;
  const ProcessFigures after = board.settled(idle_threads);
  board.stop();

  report
      .figure(queries, " answers of ", expected.size(), " bytes to ", kSlowReaders,
              " slow readers, whole, in ", milliseconds(slow), " ms each")
      .figure(beside.waits.size(), " quick queries meanwhile, half of them within ",
              milliseconds(beside.median()), " ms, all within ", milliseconds(beside.longest()),
              " ms")
      .figure("memory ", mebibytes(before.resident_kib), ", at most ",
              mebibytes(beside.most_memory), ", ", mebibytes(after.resident_kib), " after")
      .figure("descriptors ", before.descriptors, " and ", after.descriptors);
  for (const auto& failure : failures)
    report.require(false, failure);
  // A client that had to wait for slow readers would wait for several of their answers.
  report.require(!memory_is_comparable() || beside.median() < slow / 2,
                 "a slow reader delays the others");
  report.require(after.descriptors == before.descriptors, "descriptors were lost");
  return report.finish();
}

}  // namespace load
