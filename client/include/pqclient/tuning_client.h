// A tuning tool's requests to a board, one call each.
//
// Connects on the first call and keeps the connection. A failed call drops it, so that a late
// answer is never taken for the next one; the next call connects again. One thread at a time.
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

// Time-outs. The board works on one request at a time, and each redraw takes it 2 seconds.
struct Timing {
  std::chrono::milliseconds connect{5'000};
  std::chrono::milliseconds answer{5'000};
  // For answers after up to two redraws: an acknowledgement, or the query after an update.
  std::chrono::milliseconds slow_answer{10'000};
  // Until the header of a dump (4.2 s at the earliest), and again until the end of the picture.
  std::chrono::milliseconds dump{20'000};
  // Pause after a packet without a reply, so that the board receives the next one separately: it
  // does not split packets that arrive together.
  std::chrono::milliseconds gap{300};
};

enum class DumpSide { kInput, kOutput };  // before or after the board's picture processing

// The RFC 6902 operation that replaces the value at `path` by `value`.
JsonPtr replace_operation(std::string_view path, const cJSON& value);

class TuningClient {
 public:
  // tool_version: the name and version that the board logs for this tool.
  explicit TuningClient(Address address, Timing timing = {}, std::string tool_version = "pqclient");

  // Queries the stored values of one section, always the whole: `path` points to it or into it.
  //   PQ    "/csc", "/csc/cscBrightness": the value is the section's object. A path without a
  //         section gets no answer (kTimeout).
  //   AIPQ  "/dci" or "/acm": an array of one object per scene. The value is null if the
  //         document has no such table.
  // After an update on the same connection the answer comes once the update was handled: it proves
  // that the value is stored, not that it is visible.
  Answer query(Document document, std::string_view path);
  Answer query_pq(std::string_view path) { return query(Document::kPq, path); }
  Answer query_aipq(std::string_view path) { return query(Document::kAipq, path); }

  // Updates a document: sends one RFC 6902 operation object. PQ paths point into the
  // "pq_tuning_param" object ("/csc/cscBrightness"), AIPQ paths start at the root of the AIPQ
  // document ("/dci/4/dciEnable").
  // Returns once the bytes are sent: the board does not reply to updates. It cuts numbers silently
  // and ignores operations that fail, so check the operation first (check.h) and query afterwards.
  void update(Document document, const cJSON& operation);
  void update_pq(const cJSON& operation) { update(Document::kPq, operation); }
  void update_aipq(const cJSON& operation) { update(Document::kAipq, operation); }

  // Discards the leftovers of an interrupted upload on the board, which would garble every later
  // document of more than one piece. Changes no value. Does not work after an upload longer than
  // half a megabyte.
  void clear_upload_buffer();

  // Fills the screen with a colour; returns once the board has acknowledged, after 2 seconds.
  // The picture comes back with pattern_mode(false).
  void show_pattern(std::uint8_t red, std::uint8_t green, std::uint8_t blue);

  // true: the board saves its DCI switch and turns DCI off. false: it closes the test colour and
  // restores the switch. Enter once and leave once: entering twice loses the saved switch. Leaving
  // without entering restores the switch saved last, which is off if none was saved since the
  // server's start.
  void pattern_mode(bool enter);

  // One picture from the display service. Throws kTimeout also if the service dumps nothing,
  // because the board then sends nothing; kBadAnswer for an impossible format or size.
  Dump request_dump(DumpSide side);

  // The board's number in the last answer; empty before the first answer.
  [[nodiscard]] std::optional<int> platform() const { return platform_; }

  [[nodiscard]] std::string address() const { return address_.text(); }

 private:
  Connection take_connection();
  [[nodiscard]] std::string request_text(JsonPtr operation) const;
  void send_unanswered(ByteView bytes);
  void run_command(Command command, ByteView arguments);

  Address address_;
  Timing timing_;
  std::string tool_version_;
  std::optional<int> platform_;  // sent with each request
  std::optional<Connection> connection_;
  std::chrono::steady_clock::time_point quiet_until_;  // end of the pause after an update
  bool change_pending_ = false;                        // no reply received since the last update
};

}  // namespace pqclient

#endif  // PQCLIENT_TUNING_CLIENT_H_
