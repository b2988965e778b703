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
  // text: the request with its outer brackets, not terminated. What is no request, or holds more
  // than a million values, parses to one whose path names no section.
  explicit PqRequest(std::string_view text);

  // Null when nothing could be parsed; else a JSON item, usually the operation object.
  cJSON* operation() const { return operation_; }

  // The whole text as a patch, null when it is no JSON. The operation goes with it, so this comes
  // last: a large request must not stay in memory while the display takes its seconds. What the
  // path names stays known.
  JsonPtr take_patch();

  // The member as a text; null when the operation has none, or no text there.
  const char* text_member(const char* name) const;

  // Whether the path holds `word` anywhere. Sections are chosen so.
  bool path_names(std::string_view word) const;

  // Both compare the board's platform, "ro.board.platform", with the tool's. A board that is none
  // of ours counts as 3 in changes and as 0 in queries: tools rely on the two being different.

  // For changes: logs the platform that the tool believes the board has, and a mismatch as an error
  // which stops nothing.
  void check_platform() const;

  // For queries: logs the board's platform and puts its number into the operation, if it names one.
  void put_platform();

 private:
  JsonPtr patch_;
  JsonPtr lone_operation_;      // of a text that is no patch
  cJSON* operation_ = nullptr;  // in one of the two
  std::string path_;
};

// What log lines print for a text that is missing.
inline const char* or_empty(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace pq

#endif  // QXAIQ_PQ_REQUEST_H_
