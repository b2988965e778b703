// libcutils.so of the simulated board: Android's property calls over the property files.
#include <cutils/properties.h>

#include <cerrno>
#include <cinttypes>
#include <string>

#include "description/description.h"
#include "properties/property_store.h"

namespace {

const board::PropertyStore& store() {
  static const board::PropertyStore properties(board::board_folder() / "properties");
  return properties;
}

}  // namespace

extern "C" int property_get(const char* key, char* value, const char* default_value) {
  std::string found = store().get(key).value_or("");
  if (found.empty() && default_value != nullptr) found = default_value;
  const size_t length = found.copy(value, PROPERTY_VALUE_MAX - 1);
  value[length] = '\0';
  return static_cast<int>(length);
}

extern "C" int32_t property_get_int32(const char* key, int32_t default_value) {
  char text[PROPERTY_VALUE_MAX];
  if (property_get(key, text, "") < 1) return default_value;
  const int saved_errno = errno;
  errno = 0;
  char* end = nullptr;
  const intmax_t number = std::strtoimax(text, &end, 0);
  const bool usable = errno == 0 && end != text && number >= INT32_MIN && number <= INT32_MAX;
  errno = saved_errno;
  return usable ? static_cast<int32_t>(number) : default_value;
}

extern "C" int property_set(const char* key, const char* value) {
  return store().set(key, value != nullptr ? value : "");
}
