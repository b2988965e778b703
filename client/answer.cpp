#include "pqclient/answer.h"

#include <string_view>

#include "pqclient/error.h"

namespace pqclient {
namespace {

constexpr std::size_t kShownText = 60;

std::string_view object_text(ByteView payload) {
  std::string_view text(reinterpret_cast<const char*>(payload.data()), payload.size());
  text = text.substr(0, text.find('\0'));
  if (text.starts_with('[')) text.remove_prefix(1);
  return text;
}

}  // namespace

Answer parse_answer(ByteView payload) {
  const std::string_view text = object_text(payload);
  Answer answer;
  answer.request = parse_json(text);
  if (cJSON_IsObject(answer.request.get()) == 0) {
    throw Error(ErrorKind::kBadAnswer,
                "the answer is not a JSON object: " + quoted_text(text.substr(0, kShownText)) +
                    (text.size() > kShownText ? "..." : ""));
  }
  if (const cJSON* path = last_member(*answer.request, "path"); cJSON_IsString(path) != 0) {
    answer.path = path->valuestring;
  }
  if (const cJSON* platform = last_member(*answer.request, "platform");
      cJSON_IsNumber(platform) != 0) {
    answer.platform = platform->valueint;
  }
  answer.value = last_member(*answer.request, "value");
  return answer;
}

}  // namespace pqclient
