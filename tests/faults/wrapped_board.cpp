// The board's libraries, each call wrapped: the real libdrm over the simulated device; the others
// in process, so that nothing on the board reacts to the many changes. The 3D LUT engine can fail
// but computes nothing.
#include <xf86drm.h>
#include <xf86drmMode.h>

#include <cerrno>
#include <string_view>

#include <cutils/properties.h>

#include "faults/fault.h"

using faults::Call;
using faults::Exempt;
using faults::strike;

// One wrapper per line: its failure value, its parameters, and how they are passed on. Calls inside
// the board's library are not wrapped.
#define WRAPPED(call, result, name, failure, parameters, arguments) \
  result __real_##name parameters;                                  \
  result __wrap_##name parameters {                                 \
    if (strike(call) != 0) return failure;                          \
    const Exempt exempt;                                            \
    return __real_##name arguments;                                 \
  }

extern "C" {

WRAPPED(Call::kDisplay, int, drmOpen, -1, (const char* name, const char* bus_id), (name, bus_id))
WRAPPED(Call::kDisplay, drmModeResPtr, drmModeGetResources, nullptr, (int fd), (fd))
WRAPPED(Call::kDisplay, drmModeConnectorPtr, drmModeGetConnector, nullptr, (int fd, uint32_t id),
        (fd, id))
WRAPPED(Call::kDisplay, drmModeEncoderPtr, drmModeGetEncoder, nullptr, (int fd, uint32_t id),
        (fd, id))
WRAPPED(Call::kDisplay, drmModeObjectPropertiesPtr, drmModeObjectGetProperties, nullptr,
        (int fd, uint32_t id, uint32_t type), (fd, id, type))
WRAPPED(Call::kDisplay, drmModePropertyPtr, drmModeGetProperty, nullptr, (int fd, uint32_t id),
        (fd, id))
WRAPPED(Call::kDisplay, int, drmModeCreatePropertyBlob, -ENOMEM,
        (int fd, const void* data, size_t size, uint32_t* id), (fd, data, size, id))
WRAPPED(Call::kDisplay, int, drmModeDestroyPropertyBlob, -EINVAL, (int fd, uint32_t id), (fd, id))
WRAPPED(Call::kDisplay, int, drmModeObjectSetProperty, -EINVAL,
        (int fd, uint32_t id, uint32_t type, uint32_t property, uint64_t value),
        (fd, id, type, property, value))
WRAPPED(Call::kDisplay, int, drmSetClientCap, -EINVAL, (int fd, uint64_t cap, uint64_t value),
        (fd, cap, value))
WRAPPED(Call::kDisplay, drmModeAtomicReqPtr, drmModeAtomicAlloc, nullptr, (), ())
WRAPPED(Call::kDisplay, int, drmModeAtomicAddProperty, -ENOMEM,
        (drmModeAtomicReqPtr request, uint32_t id, uint32_t property, uint64_t value),
        (request, id, property, value))
WRAPPED(Call::kDisplay, int, drmModeAtomicCommit, -EBUSY,
        (int fd, drmModeAtomicReqPtr request, uint32_t flags, void* data),
        (fd, request, flags, data))

WRAPPED(Call::kNone, int, property_get, 0, (const char* key, char* value, const char* otherwise),
        (key, value, otherwise))
WRAPPED(Call::kNone, int32_t, property_get_int32, 0, (const char* key, int32_t otherwise),
        (key, otherwise))
WRAPPED(Call::kProperty, int, property_set, -1, (const char* key, const char* value), (key, value))

}  // extern "C"

namespace {

// The 3D LUT engine.
int open_engine(void** handle, void* /*configuration*/) {
  static int context = 0;
  if (strike(Call::kEngine) != 0) return -5;
  *handle = &context;
  return 0;
}
int use_engine(void* /*handle*/, void* /*what*/) {
  return strike(Call::kEngine) != 0 ? -5 : 0;
}
int close_engine(void* /*handle*/) {
  return strike(Call::kEngine) != 0 ? -5 : 0;
}

}  // namespace

extern "C" {

void* __wrap_dlopen(const char* /*library*/, int /*flags*/) {
  static int library = 0;
  return strike(Call::kLoad) != 0 ? nullptr : &library;
}
char* __wrap_dlerror() {
  static char text[] = "no such library";
  return text;
}
void* __wrap_dlsym(void* /*library*/, const char* name) {
  if (strike(Call::kLoad) != 0) return nullptr;
  const std::string_view entry(name);
  if (entry == "hwpq_lite_init") return reinterpret_cast<void*>(open_engine);
  if (entry == "hwpq_lite_deinit") return reinterpret_cast<void*>(close_engine);
  return reinterpret_cast<void*>(use_engine);
}

}  // extern "C"
