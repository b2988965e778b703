// libcutils: its properties.
#include <cutils/properties.h>

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstring>
#include <mutex>
#include <string_view>

#include "in_process/platform.h"

namespace {

std::mutex properties_mutex;

}  // namespace

int property_get(const char* key, char* value, const char* default_value) {
  const std::lock_guard lock(properties_mutex);
  const auto& properties = in_process::platform.properties;
  const auto found = properties.find(std::string_view(key));
  std::string_view text = default_value == nullptr ? "" : default_value;
  if (found != properties.end() && !found->second.empty()) text = found->second;
  text = text.substr(0, PROPERTY_VALUE_MAX - 1);
  *std::copy(text.begin(), text.end(), value) = '\0';
  return static_cast<int>(text.size());
}

int32_t property_get_int32(const char* key, int32_t default_value) {
  std::array<char, PROPERTY_VALUE_MAX> text{};
  char* end = text.data();
  if (property_get(key, text.data(), nullptr) == 0) return default_value;
  const intmax_t number = std::strtoimax(text.data(), &end, 0);
  const bool fits = *end == '\0' && number == static_cast<int32_t>(number);
  return fits ? static_cast<int32_t>(number) : default_value;
}

int property_set(const char* key, const char* value) {
  if (in_process::platform.fails(in_process::Call::kProperty)) return -1;
  in_process::require(std::strlen(value) < PROPERTY_VALUE_MAX);
  const std::lock_guard lock(properties_mutex);
  in_process::platform.properties[key] = value;
  return 0;
}
