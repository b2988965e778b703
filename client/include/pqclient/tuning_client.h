// What a tuning tool can ask of a board, one call each.
//
// Connects when first needed and keeps the connection. A failed call drops it, so that a late
// answer can never be taken for the next one; the next call connects again. One thread at a time.
// Every call may throw Error kConnect, kTimeout, kConnectionLost and kBadAnswer.
#ifndef PQCLIENT_TUNING_CLIENT_H_
#define PQCLIENT_TUNING_CLIENT_H_

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "pqclient/answer.h"
#include "pqclient/connection.h"

namespace pqclient {

// How long to wait. The board works on one request at a time, and a redraw takes it 2 seconds.
struct Timeouts {
  std::chrono::milliseconds connect{5'000};
  std::chrono::milliseconds answer{5'000};
  std::chrono::milliseconds after_change{
      10'000};  // a query right after a change: up to 4 s of work
};

class TuningClient {
 public:
  // tool_version: what the board logs about its visitor.
  explicit TuningClient(Address address, Timeouts timeouts = {},
                        std::string tool_version = "pqclient");

  // The stored values of one section, always as a whole: `path` points to it or into it, such as
  // "/csc" or "/csc/cscBrightness". A path without a section gets no answer (kTimeout).
  // The answer's value is an object with all members of the section.
  Answer query_pq(std::string_view path);

  // "/dci" or "/acm": an array of one object for each AI scene. The answer's value is null when the
  // document has no such table.
  Answer query_aipq(std::string_view path);

  [[nodiscard]] std::string address() const { return address_.text(); }

 private:
  Answer query(DocumentCommand command, std::string_view path);
  std::string request_text(JsonPtr operation) const;
  Connection take_connection();

  Address address_;
  Timeouts timeouts_;
  std::string tool_version_;
  int platform_ = 0;  // as the last answer had it; requests carry it
  std::optional<Connection> connection_;
};

}  // namespace pqclient

#endif  // PQCLIENT_TUNING_CLIENT_H_
