#include "qxaiq/json.h"

#include <mutex>

namespace pq {

JsonPtr parse_json(std::string_view text) {
  static std::mutex parser_mutex;
  const std::lock_guard lock(parser_mutex);
  return JsonPtr(cJSON_ParseWithLength(text.data(), text.size()));
}

}  // namespace pq
