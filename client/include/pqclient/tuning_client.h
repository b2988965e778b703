// What a tuning tool can ask of a board, one call each.
//
// Connects when first needed and keeps the connection. A failed call drops it, so that a late
// answer can never be taken for the next one; the next call connects again. One thread at a time.
// Every call may throw Error kConnect, kTimeout, kConnectionLost and kBadAnswer.
#ifndef PQCLIENT_TUNING_CLIENT_H_
#define PQCLIENT_TUNING_CLIENT_H_

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "pqclient/answer.h"
#include "pqclient/connection.h"
#include "pqclient/dump.h"
#include "pqclient/schema.h"

namespace pqclient {

// How long to wait. The board works on one request at a time, and a redraw takes it 2 seconds.
struct Timing {
  std::chrono::milliseconds connect{5'000};
  std::chrono::milliseconds answer{5'000};
  // Answers that stand behind up to two redraws: an acknowledgement, the query after a change.
  std::chrono::milliseconds slow_answer{10'000};
  // To the head of a dump (4.2 s at the earliest), and once more for the picture.
  std::chrono::milliseconds dump{20'000};
  // Silence after a packet that gets no answer, so that the board receives the next one by itself:
  // it does not split what arrives together.
  std::chrono::milliseconds gap{300};
};

enum class DumpSide { kInput, kOutput };  // before or after the board's picture processing

// The RFC 6902 operation that puts `value` in the place of what `path` points to.
JsonPtr replace_operation(std::string_view path, const cJSON& value);

class TuningClient {
 public:
  // tool_version: what the board logs about its visitor.
  explicit TuningClient(Address address, Timing timing = {}, std::string tool_version = "pqclient");

  // The stored values of one section, always as a whole: `path` points to it or into it.
  //   PQ    "/csc", "/csc/cscBrightness": the value is the section's object. A path without a
  //         section gets no answer (kTimeout).
  //   AIPQ  "/dci" or "/acm": an array of one object for each scene. The value is null when the
  //         document has no such table.
  // After a change on the same connection the answer comes when the change was handled: it proves
  // what was stored, not what is visible.
  Answer query(Document document, std::string_view path);
  Answer query_pq(std::string_view path) { return query(Document::kPq, path); }
  Answer query_aipq(std::string_view path) { return query(Document::kAipq, path); }

  // Sends one RFC 6902 operation object. PQ paths point into the "pq_tuning_param" object
  // ("/csc/cscBrightness"), AIPQ paths start at the root of the AIPQ document ("/dci/4/dciEnable").
  // Returns when the bytes are sent: the board answers no change. It cuts numbers silently and
  // ignores what it cannot apply, so check the operation first (check.h) and query afterwards.
  void write(Document document, const cJSON& operation);
  void write_pq(const cJSON& operation) { write(Document::kPq, operation); }
  void write_aipq(const cJSON& operation) { write(Document::kAipq, operation); }

  // Rids the board of what an interrupted upload left there, which would garble every later
  // document of more than one piece. Changes no value. Does not reach the leftovers of an upload
  // longer than half a megabyte.
  void clear_upload_buffer();

  // Fills the screen with a colour; returns when the board has acknowledged, after 2 seconds.
  // The picture comes back with pattern_mode(false).
  void show_pattern(std::uint8_t red, std::uint8_t green, std::uint8_t blue);

  // true: the board saves its DCI switch and turns it off. false: it closes the test colour and
  // restores the switch. Enter once and leave once: a second enter loses the saved switch, and
  // leaving without an enter restores that of the last one, off where there was none since the
  // server's start.
  void pattern_mode(bool enter);

  // One picture as the display service dumps it. kTimeout also when the service dumps nothing,
  // because the board then sends nothing. Throws kBadAnswer for a format or size that cannot be.
  Dump request_dump(DumpSide side);

  // The board's number as the last answer had it; nothing before the first answer.
  [[nodiscard]] std::optional<int> platform() const { return platform_; }

  [[nodiscard]] std::string address() const { return address_.text(); }

 private:
  Connection take_connection();
  std::string request_text(JsonPtr operation) const;
  void send_unanswered(ByteView bytes);
  void run_command(Command command, ByteView arguments);

  Address address_;
  Timing timing_;
  std::string tool_version_;
  std::optional<int> platform_;  // requests carry it
  std::optional<Connection> connection_;
  std::chrono::steady_clock::time_point quiet_until_;  // end of the gap after an unanswered packet
  bool change_pending_ = false;                        // nothing was answered since the last one
};

}  // namespace pqclient

#endif  // PQCLIENT_TUNING_CLIENT_H_
