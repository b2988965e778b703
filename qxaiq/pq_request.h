// The JSON text of a PQ or AIPQ request: an array holding one JSON Patch (RFC 6902) operation that
// also names the tool's version and platform. Its "path" doubles as the section selector.
#ifndef QXAIQ_PQ_REQUEST_H_
#define QXAIQ_PQ_REQUEST_H_

#include <cstdint>
#include <string_view>

#include "qxaiq/json.h"

namespace pq {

// The board's platform number, by "ro.board.platform". A board that is none of ours counts as
// `unknown`: 3 in changes, 0 in queries. Tools rely on the two being different.
int platform_number(int unknown);
inline constexpr int kUnknownPlatformInChange = 3;
inline constexpr int kUnknownPlatformInQuery = 0;

class PqRequest {
 public:
  // text: the request with its outer brackets, not terminated. What is no request parses to one
  // whose path names no section.
  explicit PqRequest(std::string_view text);

  // Null when nothing could be parsed; else a JSON item, usually the operation object.
  cJSON* operation() const { return operation_.get(); }

  // The member as a text; null when the operation has none, or no text there.
  const char* text_member(const char* name) const;

  // Whether the path holds `word` anywhere. Sections are chosen so.
  bool path_names(const char* word) const;

  // For changes: logs the platform that the tool believes the board has, and a mismatch as an error
  // which stops nothing.
  void check_platform() const;

  // For queries: logs the board's platform and puts its number into the operation, if it names one.
  void put_platform();

 private:
  JsonPtr operation_;
};

// What log lines print for a text that is missing.
inline const char* or_empty(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace pq

#endif  // QXAIQ_PQ_REQUEST_H_
