// libdrm with one panel behind it, and the base-parameter store. Every call can be the one that
// fails; what is handed out lives on the heap, so that the leak checker sees what is not freed.
#include <baseparameter_api.h>
#include <drm_mode.h>
#include <fcntl.h>
#include <unistd.h>
#include <xf86drm.h>
#include <xf86drmMode.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "fuzz/platform/platform.h"
#include "fuzz/support/check.h"

namespace {

using fuzz::platform;

constexpr uint32_t kConnector = 40, kEncoder = 50, kCrtc = 60, kBlob = 90;
// A property's id is its place here; the CRTC has the first, the connector the others.
constexpr std::array kPropertyNames = {"GAMMA_LUT", "brightness", "contrast", "saturation", "hue"};

bool fails() {
  return ++platform.display_calls == platform.failing_display_call;
}

uint32_t* new_list(std::initializer_list<uint32_t> ids) {
  auto* list = new uint32_t[ids.size()];
  std::copy(ids.begin(), ids.end(), list);
  return list;
}

void require_open(int fd) {
  fuzz::require(fcntl(fd, F_GETFD) >= 0, "the display device is open while it is used");
}

template <typename Record>
int read_record(Record* record) {
  if (platform.records.empty()) return -1;
  std::memcpy(record, platform.records.data(), std::min(sizeof(*record), platform.records.size()));
  return 0;
}

}  // namespace

int drmOpen(const char* /*name*/, const char* /*bus_id*/) {
  return fails() ? -1 : open("/dev/null", O_RDWR | O_CLOEXEC);
}

int drmSetClientCap(int fd, uint64_t /*capability*/, uint64_t /*value*/) {
  require_open(fd);
  return fails() ? -1 : 0;
}

drmModeResPtr drmModeGetResources(int fd) {
  require_open(fd);
  if (fails()) return nullptr;
  auto* resources = new drmModeRes{};
  resources->count_connectors = 1;
  resources->connectors = new_list({kConnector});
  return resources;
}

void drmModeFreeResources(drmModeResPtr resources) {
  delete[] resources->connectors;
  delete resources;
}

drmModeConnectorPtr drmModeGetConnector(int /*fd*/, uint32_t id) {
  if (fails()) return nullptr;
  auto* connector = new drmModeConnector{};
  connector->connector_id = id;
  connector->connection = DRM_MODE_CONNECTED;
  connector->connector_type = DRM_MODE_CONNECTOR_eDP;
  connector->connector_type_id = 1;
  connector->count_encoders = 1;
  connector->encoders = new_list({kEncoder});
  return connector;
}

void drmModeFreeConnector(drmModeConnectorPtr connector) {
  delete[] connector->encoders;
  delete connector;
}

drmModeEncoderPtr drmModeGetEncoder(int /*fd*/, uint32_t id) {
  if (fails()) return nullptr;
  auto* encoder = new drmModeEncoder{};
  encoder->encoder_id = id;
  encoder->crtc_id = kCrtc;
  return encoder;
}

void drmModeFreeEncoder(drmModeEncoderPtr encoder) {
  delete encoder;
}

drmModeObjectPropertiesPtr drmModeObjectGetProperties(int /*fd*/, uint32_t /*id*/, uint32_t type) {
  if (fails()) return nullptr;
  const bool crtc = type == DRM_MODE_OBJECT_CRTC;
  auto* properties = new drmModeObjectProperties{};
  properties->count_props = crtc ? 1 : 4;
  properties->props = crtc ? new_list({1}) : new_list({2, 3, 4, 5});
  return properties;
}

void drmModeFreeObjectProperties(drmModeObjectPropertiesPtr properties) {
  delete[] properties->props;
  delete properties;
}

drmModePropertyPtr drmModeGetProperty(int /*fd*/, uint32_t id) {
  if (fails()) return nullptr;
  auto* property = new drmModePropertyRes{};
  property->prop_id = id;
  std::strncpy(property->name, kPropertyNames.at(id - 1), DRM_PROP_NAME_LEN - 1);
  return property;
}

void drmModeFreeProperty(drmModePropertyPtr property) {
  delete property;
}

int drmModeCreatePropertyBlob(int fd, const void* data, size_t size, uint32_t* id) {
  require_open(fd);
  if (fails()) return -1;
  const volatile char* last = static_cast<const char*>(data) + size - 1;
  (void)*last;  // the kernel reads all of it
  *id = kBlob;
  return 0;
}

int drmModeDestroyPropertyBlob(int fd, uint32_t /*id*/) {
  require_open(fd);
  return 0;
}

int drmModeObjectSetProperty(int fd, uint32_t /*object*/, uint32_t /*type*/, uint32_t property,
                             uint64_t value) {
  require_open(fd);
  fuzz::require(property == 1 && value == kBlob, "the gamma table goes to its own property");
  return fails() ? -1 : 0;
}

drmModeAtomicReqPtr drmModeAtomicAlloc() {
  return reinterpret_cast<drmModeAtomicReqPtr>(fails() ? nullptr : new char{});
}

void drmModeAtomicFree(drmModeAtomicReqPtr request) {
  delete reinterpret_cast<char*>(request);
}

int drmModeAtomicAddProperty(drmModeAtomicReqPtr request, uint32_t object, uint32_t property,
                             uint64_t /*value*/) {
  fuzz::require(object == kConnector && property >= 2, "controls are the connector's");
  return request == nullptr || fails() ? -1 : 1;
}

int drmModeAtomicCommit(int fd, drmModeAtomicReqPtr request, uint32_t /*flags*/, void* /*user*/) {
  require_open(fd);
  return request == nullptr || fails() ? -1 : 0;
}

baseparameter_api::baseparameter_api() : library_members_() {}
baseparameter_api::~baseparameter_api() = default;
int baseparameter_api::get_version(unsigned short* first, unsigned short* second) {
  *first = platform.records.empty() ? 0 : platform.records.front() % 4;
  *second = 0;
  return 0;
}
int baseparameter_api::get_pq_tuning_info(pq_tuning_info* info) {
  return read_record(info);
}
int baseparameter_api::get_pq_sharp_info(pq_sharp_info* info) {
  return read_record(info);
}
int baseparameter_api::get_aipq_info(aipq_info* info) {
  return read_record(info);
}
int baseparameter_api::set_brightness(unsigned /*type*/, unsigned /*index*/, unsigned short) {
  return 0;
}
int baseparameter_api::set_contrast(unsigned /*type*/, unsigned /*index*/, unsigned short) {
  return 0;
}
int baseparameter_api::set_saturation(unsigned /*type*/, unsigned /*index*/, unsigned short) {
  return 0;
}
int baseparameter_api::set_hue(unsigned /*type*/, unsigned /*index*/, unsigned short) {
  return 0;
}
int baseparameter_api::set_cubic_lut_data(unsigned /*type*/, unsigned /*index*/,
                                          cubic_lut_data* data) {
  return data->size == 0 ? -1 : 0;
}
