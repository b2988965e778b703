// Android's system properties, as far as the product uses them, for hosts that have none.
// The calls go to libcutils.so, whichever library of that name the process finds.
#ifndef BOARD_CUTILS_PROPERTIES_H_
#define BOARD_CUTILS_PROPERTIES_H_

// NOLINTBEGIN(modernize-deprecated-headers): as the platform declares it, for C too
#include <stddef.h>
#include <stdint.h>
// NOLINTEND(modernize-deprecated-headers)

#define PROPERTY_KEY_MAX 32
#define PROPERTY_VALUE_MAX 92

#ifdef __cplusplus
extern "C" {
#endif

// Copies the value with its zero byte into `value` (PROPERTY_VALUE_MAX bytes); the default, when it
// is not null, stands in for a missing or empty one. Returns the length of what was copied.
int property_get(const char* key, char* value, const char* default_value);

// The value as a number, base from its prefix as strtoimax; the default when there is none or it
// does not fit.
int32_t property_get_int32(const char* key, int32_t default_value);

// Returns 0, or a negative value when the name or the value is not allowed.
int property_set(const char* key, const char* value);

#ifdef __cplusplus
}
#endif

#endif  // BOARD_CUTILS_PROPERTIES_H_
