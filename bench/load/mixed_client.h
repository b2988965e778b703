// A client that sends, in random order, all kinds of valid and malformed requests.
#ifndef BENCH_LOAD_MIXED_CLIENT_H_
#define BENCH_LOAD_MIXED_CLIENT_H_

#include <array>
#include <cstddef>
#include <optional>
#include <random>

#include "load/wire.h"

namespace load {

enum class Kind {
  kQuery,         // of a PQ section
  kAipqQuery,     // of an AIPQ table
  kChange,        // of the PQ document, followed by a query that proves it was handled
  kAipqChange,    // the same for the AIPQ document
  kLongChange,    // an update of several receives; others' half documents may garble it
  kPattern,       // a test colour, acknowledged
  kPatternMode,   // entered or left, acknowledged
  kDump,          // of the picture
  kHalfDocument,  // the start of a long document, then a disconnect
  kNonsense,      // bytes that are not a packet
  kLeave,         // a query whose answer is not read
};
inline constexpr size_t kKindCount = 11;

// The number of successful requests of each kind, and of dumps received.
struct Tally {
  std::array<size_t, kKindCount> done{};
  size_t answers = 0;         // to queries, each of them checked
  size_t dumps_received = 0;  // for the others the display service was too late

  Tally& operator+=(const Tally& other);
  [[nodiscard]] size_t total() const;
  [[nodiscard]] size_t of(Kind kind) const { return done[static_cast<size_t>(kind)]; }
};

// One thread at a time; several clients may run at once.
class MixedClient {
 public:
  explicit MixedClient(unsigned seed) : random_(seed) {}

  // Makes one request and waits until the daemon has handled it. Throws std::exception if the
  // answer is wrong or missing, or if the daemon drops a connection.
  void make_request();

  [[nodiscard]] const Tally& tally() const { return tally_; }

 private:
  Wire& kept();
  size_t pick(size_t count);
  Kind pick_kind();

  void perform(Kind kind);
  void query(bool aipq);
  void change(bool aipq, size_t padding);
  void show_pattern();
  void switch_pattern_mode();
  void take_dump();
  void send_half_a_document();
  void send_nonsense();
  void leave_before_the_answer();

  std::mt19937 random_;
  std::optional<Wire> wire_;
  Tally tally_;
};

}  // namespace load

#endif  // BENCH_LOAD_MIXED_CLIENT_H_
