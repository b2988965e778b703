#include <atomic>
#include <chrono>
#include <csignal>
#include <exception>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "load/loaded_board.h"
#include "load/report.h"
#include "load/requests.h"
#include "load/runs.h"

namespace load {
namespace {

using Clock = std::chrono::steady_clock;
using pqclient::DocumentCommand;

constexpr unsigned kHurry = 1'000;  // the document matters, not the redraw
constexpr int kValues = 512;
constexpr std::chrono::microseconds kMaxLife{60'000};

// The number in a document that a client updates all the time: 0, 1, 2 and so on.
struct Place {
  const char* file;
  const char* side_file;
  DocumentCommand write;
  DocumentCommand read;
  std::string_view path;     // of the number
  std::string_view section;  // the part of a document that a query of it returns
};
constexpr Place kPqPlace = {kPqDocument,
                            "/data/vendor/qxalgo/.pq_config.json.saving",
                            DocumentCommand::kUpdatePq,
                            DocumentCommand::kQueryPq,
                            "/csc/cscHue",
                            "/csc"};
constexpr Place kAipqPlace = {kAipqDocument,
                              "/data/vendor/qxalgo/.aipq_config.json.saving",
                              DocumentCommand::kUpdateAipq,
                              DocumentCommand::kQueryAipq,
                              "/acm/0/lumGain",
                              "/acm"};

// The object that contains the number; null if the document lacks it.
cJSON* owner_in(cJSON* document, const Place& place) {
  if (place.write == DocumentCommand::kUpdatePq) {
    cJSON* parameters = cJSON_GetObjectItemCaseSensitive(document, "pq_tuning_param");
    return cJSON_GetObjectItemCaseSensitive(parameters, "csc");
  }
  return cJSON_GetArrayItem(cJSON_GetObjectItemCaseSensitive(document, "acm"), 0);
}

// Updates one number until the daemon is gone. Another thread reads its progress.
class Changer {
 public:
  explicit Changer(const Place& place) : place_(place) {}

  void run(int first) {
    sent_ = stored_ = first;
    thread_ = std::thread([this] {
      try {
        Wire wire;
        for (;;)
          change(wire);
      } catch (const std::exception&) {
        // The daemon was killed.
      }
    });
  }
  void join() { thread_.join(); }

  // The document must contain a number from stored() to sent().
  [[nodiscard]] int stored() const { return stored_; }
  [[nodiscard]] int sent() const { return sent_; }

 private:
  void change(Wire& wire) {
    const int next = sent_ + 1;
    sent_ = next;
    wire.send(
        document_packet(place_.write, replace_text(place_.path, std::to_string(next % kValues))));
    wire.wait_until_taken();
    ask(wire, place_.read, place_.section);
    stored_ = next;
  }

  const Place& place_;
  std::thread thread_;
  std::atomic<int> sent_ = 0;
  std::atomic<int> stored_ = 0;
};

// Follows one of the two documents over all kills.
class Watched {
 public:
  Watched(LoadedBoard& board, const Place& place)
      : board_(board.board()), place_(place), changer_(place), original_(without_number()) {}

  void start_changing() { changer_.run(last_); }
  [[nodiscard]] bool has_changed() const { return changer_.stored() > last_; }
  [[nodiscard]] int changes() const { return last_; }
  void wait_for_the_end() { changer_.join(); }

  [[nodiscard]] bool was_being_saved() const {
    return std::filesystem::exists(board_.file(place_.side_file));
  }

  // Returns an empty text if the document is one that was sent, otherwise the fault.
  std::string check() {
    const Found found = without_number();
    if (found.text.empty()) return "cannot be parsed";
    if (found.text != original_.text) {
      original_.text = found.text;  // reported only once
      return "differs in more than the updated number";
    }
    for (int number = changer_.stored(); number <= changer_.sent(); ++number) {
      if (found.number != in_document(number)) continue;
      last_ = number;
      return "";
    }
    return "contains " + std::to_string(found.number) + " instead of " +
           std::to_string(changer_.stored()) + " to " + std::to_string(changer_.sent());
  }

 private:
  struct Found {
    std::string text;  // the document without the number; empty if either is missing
    int number = 0;
  };

  [[nodiscard]] Found without_number() const {
    const auto document = pqclient::parse_whole_json(board_.read(place_.file));
    const std::string name(place_.path.substr(place_.path.rfind('/') + 1));
    // Removed rather than set to 0: a replaced member of the AIPQ document moves to the end.
    const pqclient::JsonPtr number(
        cJSON_DetachItemFromObjectCaseSensitive(owner_in(document.get(), place_), name.c_str()));
    if (!cJSON_IsNumber(number.get())) return {};
    return {pqclient::print_json(*document), number->valueint};
  }

  // Before the first update the number is the board's own.
  [[nodiscard]] int in_document(int number) const {
    return number == 0 ? original_.number : number % kValues;
  }

  board::Board& board_;
  const Place& place_;
  Changer changer_;
  Found original_;
  int last_ = 0;
};

}  // namespace

bool run_kills(size_t kills) {
  Report report("kill");
  std::mt19937 random(1);
  std::uniform_int_distribution<int> life(0, static_cast<int>(kMaxLife.count()));
  LoadedBoard board({.hurry = kHurry});
  Watched pq(board, kPqPlace);
  Watched aipq(board, kAipqPlace);
  size_t while_saving = 0;
  size_t bad = 0;
  for (size_t i = 0; i < kills; ++i) {
    pq.start_changing();
    aipq.start_changing();
    for (const auto end = Clock::now() + kPatience; !pq.has_changed() || !aipq.has_changed();) {
      if (Clock::now() > end)
        throw std::runtime_error("no update was stored:\n" + board.board().log());
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::this_thread::sleep_for(std::chrono::microseconds(life(random)));
    (void)board.board().stop(SIGKILL);
    pq.wait_for_the_end();
    aipq.wait_for_the_end();
    if (pq.was_being_saved() || aipq.was_being_saved()) ++while_saving;
    board.start();
    for (auto* document : {&pq, &aipq}) {
      const std::string wrong = document->check();
      if (wrong.empty()) continue;
      ++bad;
      report.require(false, (document == &pq ? "the PQ document " : "the AIPQ document ") + wrong);
    }
  }
  board.stop();
  const std::string log = board.board().log();
  size_t restored = 0;
  for (size_t at = 0; (at = log.find("was cut short", at)) != std::string::npos; ++at)
    ++restored;
  report
      .figure(kills, " kills during ", pq.changes(), " PQ and ", aipq.changes(), " AIPQ changes, ",
              while_saving, " of them while a document was saved")
      .figure(restored, " documents restored at the next start")
      .figure(bad, " lost, unparsable or wrong");
  return report.finish();
}

}  // namespace load
