#include "qxaiq/change_counter.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include <cutils/properties.h>

#include "base/log.h"
#include "base/thread_annotations.h"

namespace pq {
namespace {

Mutex counter_mutex;  // so that two changes at once count twice

}  // namespace

void bump(const char* property) {
  const MutexLock lock(counter_mutex);
  // Unsigned, so that the largest value goes on to the smallest instead of nowhere.
  const uint32_t next = static_cast<uint32_t>(property_get_int32(property, 0)) + 1;
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%d", static_cast<int32_t>(next));
  if (property_set(property, text.data()) < 0) {
    log_error()("cannot set %s to %s: the display service does not learn of the change", property,
                text.data());
  }
}

}  // namespace pq
