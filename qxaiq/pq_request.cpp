#include "qxaiq/pq_request.h"

#include <array>
#include <cstddef>
#include <string_view>

#include <cutils/properties.h>

#include "base/log.h"
#include "base/saturate.h"
#include "documents/names.h"
#include "json/limits.h"
#include "json/value_count.h"

namespace pq {
namespace {

constexpr std::array<std::string_view, 3> kPlatforms = {"qxt100", "qxt200", "qxt300"};

// The numbers of any other board.
constexpr int kUnknownPlatformInUpdate = 3;
constexpr int kUnknownPlatformInQuery = 0;

using PropertyText = std::array<char, PROPERTY_VALUE_MAX>;

PropertyText read_platform() {
  PropertyText text{};
  property_get(kPlatformProperty, text.data(), nullptr);
  return text;
}

int number_of(std::string_view platform, int unknown) {
  for (size_t i = 0; i < kPlatforms.size(); ++i) {
    if (kPlatforms[i] == platform) return static_cast<int>(i);
  }
  return unknown;
}

}  // namespace

// The operation is the text between the first and the last character. In a patch that is its first
// element, or begins with it.
PqRequest::PqRequest(std::string_view text) {
  if (count_values(text).values > kMaxItems) {
    log_error()("request of %zu bytes dropped: it holds more than %zu values\n", text.size(),
                kMaxItems);
    return;
  }
  patch_ = parse_quickly(text);
  if (cJSON_IsArray(patch_.get()) && text[0] == '[') {
    operation_ = patch_->child;
  } else {
    // Without two brackets there is nothing to parse, and the length would wrap.
    if (text.size() >= 2) lone_operation_ = parse_json(text.substr(1, text.size() - 2));
    operation_ = lone_operation_.get();
  }
  path_ = or_empty(text_member("path"));
}

JsonPtr PqRequest::take_patch() {
  operation_ = nullptr;
  lone_operation_.reset();
  return std::move(patch_);
}

const char* PqRequest::text_member(const char* name) const {
  if (!cJSON_IsObject(operation_)) return nullptr;
  return cJSON_GetStringValue(cJSON_GetObjectItem(operation_, name));
}

bool PqRequest::path_names(std::string_view word) const {
  return path_.find(word) != std::string::npos;
}

void PqRequest::check_platform() const {
  const cJSON* item =
      cJSON_IsObject(operation_) ? cJSON_GetObjectItem(operation_, "platform") : nullptr;
  const int claimed = pq::saturate<int32_t>(cJSON_GetNumberValue(item));
  const int actual = number_of(read_platform().data(), kUnknownPlatformInUpdate);
  log_debug()("json platform %d soc platform %d", claimed, actual);
  if (claimed != actual) log_error()("platform error");
}

void PqRequest::put_platform() {
  const PropertyText platform = read_platform();
  log_debug()("platform prop %s", platform.data());
  if (!cJSON_IsObject(operation_)) return;
  const AllocationWatch memory;
  JsonPtr number(cJSON_CreateNumber(number_of(platform.data(), kUnknownPlatformInQuery)));
  if (number && cJSON_ReplaceItemInObject(operation_, "platform", number.get())) {
    (void)number.release();
  } else {
    memory.throw_if_failed();  // else the request names no platform, and the answer won't either
  }
}

}  // namespace pq
