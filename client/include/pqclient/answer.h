// The text of a query's reply, and what it holds.
#ifndef PQCLIENT_ANSWER_H_
#define PQCLIENT_ANSWER_H_

#include <optional>
#include <string>

#include "pqclient/json.h"
#include "pqclient/packets.h"

namespace pqclient {

struct Answer {
  JsonPtr request;               // the request as the board sent it back, "value" included
  std::string path;              // the path that it answers, "" when it has none
  std::optional<int> platform;   // the board's number: 0, 1 or 2 (0 also for an unknown board)
  const cJSON* value = nullptr;  // inside `request`; null when the board has no such table
};

// payload: the bytes between header and trailer: "[", one JSON object, a zero byte.
// There is no closing bracket, and a "value" that the request had stands before the board's: the
// last one is the answer. Also taken: a text without brackets, with a closing one, or unterminated.
// Throws Error kBadAnswer when there is no JSON object.
Answer parse_answer(ByteView payload);

}  // namespace pqclient

#endif  // PQCLIENT_ANSWER_H_
