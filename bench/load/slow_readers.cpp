#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <mutex>
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
constexpr int kSmallBuffer = 4096;  // so that the daemon has to wait for the reader
constexpr size_t kPiece = 8192;     // at a time
constexpr auto kPause = 20ms;       // between pieces: an answer of 270 KB takes a second

// The bytes of the whole answer, read piece by piece.
std::string read_slowly(Wire& wire, size_t size) {
  std::string bytes;
  while (bytes.size() < size) {
    std::this_thread::sleep_for(kPause);
    bytes += wire.receive(std::min(kPiece, size - bytes.size()));
  }
  return bytes;
}

std::string raw_answer(Wire& wire) {
  std::string bytes = wire.receive(sizeof(pqclient::DocumentHeader));
  pqclient::DocumentHeader header{};
  std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char*>(&header));
  return bytes + wire.receive(pqclient::reply_bytes_after(header));
}

}  // namespace

bool run_slow_readers(size_t queries) {
  Report report("slow");
  LoadedBoard board;
  const size_t idle_threads = board.figures().threads;
  const std::string question =
      document_packet(pqclient::DocumentCommand::kReadAipq, query_text("/acm"));
  std::string expected;
  {
    Wire wire;
    wire.send(question);
    expected = raw_answer(wire);
  }
  const ProcessFigures before = board.settled(idle_threads);

  std::atomic<size_t> left = queries;
  std::atomic<size_t> readers = kSlowReaders;
  std::mutex mutex;
  std::vector<std::string> failures;
  const auto read = [&] {
    try {
      Wire wire(kLoopback, kSmallBuffer);
      while (left > 0 && left-- <= queries) {
        wire.send(question);
        if (read_slowly(wire, expected.size()) != expected) throw std::runtime_error("garbled");
      }
    } catch (const std::exception& error) {
      const std::lock_guard lock(mutex);
      failures.emplace_back(error.what());
    }
    --readers;
  };
  std::vector<std::thread> threads;
  for (size_t i = 0; i < kSlowReaders; ++i)
    threads.emplace_back(read);

  const auto start = Clock::now();
  std::vector<Clock::duration> waits;
  long most_memory = 0;
  for (Wire wire; readers > 0;) {
    const auto asked = Clock::now();
    ask(wire, pqclient::DocumentCommand::kReadPq, "/csc");
    waits.push_back(Clock::now() - asked);
    most_memory = std::max(most_memory, board.figures().resident_kib);
    std::this_thread::sleep_for(10ms);
  }
  for (auto& thread : threads)
    thread.join();
  const ProcessFigures after = board.settled(idle_threads);
  board.stop();

  const Clock::duration slow = (Clock::now() - start) * kSlowReaders / queries;
  const auto middle = waits.begin() + static_cast<ptrdiff_t>(waits.size() / 2);
  std::nth_element(waits.begin(), middle, waits.end());
  const auto milliseconds = [](Clock::duration time) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
  };
  report
      .figure(queries, " answers of ", expected.size(), " bytes to ", kSlowReaders,
              " slow readers, whole, in ", milliseconds(slow), " ms each")
      .figure(waits.size(), " quick queries meanwhile, half of them within ", milliseconds(*middle),
              " ms, all within ", milliseconds(*std::max_element(waits.begin(), waits.end())),
              " ms")
      .figure("memory ", mebibytes(before.resident_kib), ", at most ", mebibytes(most_memory), ", ",
              mebibytes(after.resident_kib), " after")
      .figure("descriptors ", before.descriptors, " and ", after.descriptors);
  for (const auto& failure : failures)
    report.require(false, failure);
  // Who had to wait for slow readers would wait for several of their answers.
  report.require(!memory_is_comparable() || *middle < slow / 2, "a slow reader delays the others");
  report.require(after.descriptors == before.descriptors, "descriptors were lost");
  return report.finish();
}

}  // namespace load
