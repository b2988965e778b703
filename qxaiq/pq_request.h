// The JSON text of a PQ or AIPQ request: an array holding one JSON Patch (RFC 6902) operation that
// also names the tool's version and platform. Its "path" doubles as the section selector.
#ifndef QXAIQ_PQ_REQUEST_H_
#define QXAIQ_PQ_REQUEST_H_

#include <string>
#include <string_view>

#include "json/tree.h"

namespace pq {

class PqRequest {
 public:
  // text: the request with its outer brackets, not terminated. Malformed text, or text with
  // more than kMaxItems values, gives a request whose path names no section.
  explicit PqRequest(std::string_view text);

  // Null when nothing could be parsed; else a JSON item, usually the operation object.
  [[nodiscard]] cJSON* operation() const { return operation_; }

  // The whole text as a patch, null when it is not JSON. Call last: also discards operation(), so
  // that a large request is freed before the redraw. path_names() still works.
  JsonPtr take_patch();

  // The member as a text; null when the operation has none, or no text there.
  const char* text_member(const char* name) const;

  // True if the path contains `word` anywhere. Sections are chosen by this.
  [[nodiscard]] bool path_names(std::string_view word) const;

  // The board's platform is "ro.board.platform". Any but the three known ones counts as 3 in
  // updates and as 0 in queries: tools rely on the two being different.

  // For updates: logs the platform that the tool believes the board has, and a mismatch as an error
  // that stops nothing.
  void check_platform() const;

  // For queries: logs the board's platform and puts its number into the operation, if it names one.
  void put_platform();

 private:
  JsonPtr patch_;
  JsonPtr lone_operation_;      // of a text that is no patch
  cJSON* operation_ = nullptr;  // in one of the two
  std::string path_;
};

// For log lines: a missing text prints as an empty one.
inline const char* or_empty(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace pq

#endif  // QXAIQ_PQ_REQUEST_H_
