#include "qxaiq/pq_request.h"

#include <array>
#include <cstring>
#include <string_view>

#include <cutils/properties.h>

#include "j2s/saturate.h"
#include "qxaiq/log_source.h"

namespace pq {
namespace {

constexpr std::array<std::string_view, 3> kPlatforms = {"qxt100", "qxt200", "qxt300"};

using PropertyText = std::array<char, PROPERTY_VALUE_MAX>;

PropertyText read_platform() {
  PropertyText text{};
  property_get("ro.board.platform", text.data(), nullptr);
  return text;
}

int number_of(std::string_view platform, int unknown) {
  for (size_t i = 0; i < kPlatforms.size(); ++i) {
    if (kPlatforms[i] == platform) return static_cast<int>(i);
  }
  return unknown;
}

}  // namespace

int platform_number(int unknown) {
  return number_of(read_platform().data(), unknown);
}

PqRequest::PqRequest(std::string_view text)
    // Without its two brackets there is nothing to parse, and the length would wrap.
    : operation_(text.size() < 2 ? nullptr : parse_json(text.substr(1, text.size() - 2))) {}

const char* PqRequest::text_member(const char* name) const {
  if (!cJSON_IsObject(operation_.get())) return nullptr;
  return cJSON_GetStringValue(cJSON_GetObjectItem(operation_.get(), name));
}

bool PqRequest::path_names(const char* word) const {
  const char* path = text_member("path");
  return path != nullptr && std::strstr(path, word) != nullptr;
}

void PqRequest::check_platform() const {
  const cJSON* item = cJSON_IsObject(operation_.get())
                          ? cJSON_GetObjectItem(operation_.get(), "platform")
                          : nullptr;
  const int claimed = j2s::saturate<int32_t>(cJSON_GetNumberValue(item));
  const int actual = platform_number(kUnknownPlatformInChange);
  kProtocolLog.debug()("json platform %d soc platform %d", claimed, actual);
  if (claimed != actual) kProtocolLog.error()("platform error");
}

void PqRequest::put_platform() {
  const PropertyText platform = read_platform();
  kProtocolLog.debug()("platform prop %s", platform.data());
  if (!cJSON_IsObject(operation_.get())) return;
  const MemoryWatch memory;
  JsonPtr number(cJSON_CreateNumber(number_of(platform.data(), kUnknownPlatformInQuery)));
  if (number && cJSON_ReplaceItemInObject(operation_.get(), "platform", number.get())) {
    (void)number.release();
  } else {
    memory.check();  // else the request names no platform, and the answer won't either
  }
}

}  // namespace pq
