// The text of a query's reply, parsed.
#ifndef PQCLIENT_ANSWER_H_
#define PQCLIENT_ANSWER_H_

#include <optional>
#include <string>

#include "pqclient/json.h"
#include "pqclient/packets.h"

namespace pqclient {

struct Answer {
  JsonPtr request;               // the request as the board returned it, "value" included
  std::string path;              // the path of the query, "" if the reply has none
  std::optional<int> platform;   // the board's number: 0, 1 or 2 (0 also for an unknown board)
  const cJSON* value = nullptr;  // inside `request`; null if the board has no such table
};

// payload: the bytes between header and trailer: "[", one JSON object, a zero byte. There is no
// closing bracket. If the request had a "value" of its own, it comes before the board's: the last
// one counts. A text without brackets, with a closing one, or without the zero byte is accepted,
// too.
// Throws Error kBadAnswer if there is no JSON object.
Answer parse_answer(ByteView payload);

}  // namespace pqclient

#endif  // PQCLIENT_ANSWER_H_
