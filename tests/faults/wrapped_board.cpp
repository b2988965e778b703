// The board's libraries: the real libdrm over the simulated device, each call wrapped. Properties,
// the store of base parameters and the 3D LUT engine are stand-ins that can fail and do no more;
// so nothing on the board takes notice of the faults' many changes.
#include <dlfcn.h>
#include <xf86drm.h>
#include <xf86drmMode.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include <baseparameter_api.h>
#include <cutils/properties.h>

#include "faults/fault.h"

using faults::Call;
using faults::Exempt;
using faults::strike;

namespace {

std::mutex properties_mutex;
std::map<std::string, std::string> properties;

std::string property(const char* key, const std::string& otherwise) {
  const std::lock_guard lock(properties_mutex);
  const auto found = properties.find(key);
  return found == properties.end() || found->second.empty() ? otherwise : found->second;
}

}  // namespace

// One wrapper a line: what it fails with, its parameters, and how they are passed on. What the
// board's library does inside is its own affair.
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

int __wrap_property_get(const char* key, char* value, const char* otherwise) {
  const Exempt exempt;
  const std::string text = property(key, otherwise == nullptr ? "" : otherwise);
  return static_cast<int>(text.copy(value, PROPERTY_VALUE_MAX - 1));  // the buffers are zeroed
}
int32_t __wrap_property_get_int32(const char* key, int32_t otherwise) {
  const Exempt exempt;
  return std::stoi(property(key, std::to_string(otherwise)));
}
int __wrap_property_set(const char* key, const char* value) {
  if (strike(Call::kProperty) != 0) return -1;
  const Exempt exempt;
  const std::lock_guard lock(properties_mutex);
  properties[key] = value;
  return 0;
}

// A line for each of some ten thousand faults would tell nobody anything.
int __wrap___android_log_write(int /*priority*/, const char* /*tag*/, const char* /*text*/) {
  return 0;
}
int __wrap___android_log_print(int /*priority*/, const char* /*tag*/, const char* /*format*/, ...) {
  return 0;
}

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

int answer_of_store() {
  return strike(Call::kParameters) != 0 ? -1 : 0;
}

template <typename Record>
int give_zeros(Record* record) {
  const int answer = answer_of_store();
  if (answer == 0) *record = {};
  return answer;
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

baseparameter_api::baseparameter_api() = default;
baseparameter_api::~baseparameter_api() = default;

int baseparameter_api::get_version(unsigned short* first, unsigned short* second) {
  *first = 2;
  *second = 0;
  return answer_of_store();
}
int baseparameter_api::get_pq_tuning_info(pq_tuning_info* info) {
  return give_zeros(info);
}
int baseparameter_api::get_pq_sharp_info(pq_sharp_info* info) {
  return give_zeros(info);
}
int baseparameter_api::get_aipq_info(aipq_info* info) {
  return give_zeros(info);
}
int baseparameter_api::set_brightness(unsigned /*type*/, unsigned /*index*/,
                                      unsigned short /*value*/) {
  return answer_of_store();
}
int baseparameter_api::set_contrast(unsigned /*type*/, unsigned /*index*/,
                                    unsigned short /*value*/) {
  return answer_of_store();
}
int baseparameter_api::set_saturation(unsigned /*type*/, unsigned /*index*/,
                                      unsigned short /*value*/) {
  return answer_of_store();
}
int baseparameter_api::set_hue(unsigned /*type*/, unsigned /*index*/, unsigned short /*value*/) {
  return answer_of_store();
}
int baseparameter_api::set_cubic_lut_data(unsigned /*type*/, unsigned /*index*/,
                                          cubic_lut_data* /*data*/) {
  return answer_of_store();
}
