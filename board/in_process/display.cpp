// libdrm with one panel behind it. Objects that it returns live on the heap, so that a leak checker
// sees any that are not freed.
#include <drm_mode.h>
#include <fcntl.h>
#include <unistd.h>
#include <xf86drm.h>
#include <xf86drmMode.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "in_process/platform.h"

namespace {

using in_process::require;

constexpr uint32_t kConnector = 40, kEncoder = 50, kCrtc = 60, kBlob = 90;
// A property's id is its place here; the CRTC has the first, the connector the others.
constexpr std::array kPropertyNames = {"GAMMA_LUT", "brightness", "contrast", "saturation", "hue"};

bool fails() {
  return in_process::platform.fails(in_process::Call::kDisplay);
}

uint32_t* new_list(std::initializer_list<uint32_t> ids) {
  auto* list = new uint32_t[ids.size()];
  std::copy(ids.begin(), ids.end(), list);
  return list;
}

void require_open(int fd) {
  require(fcntl(fd, F_GETFD) >= 0);
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
  require(property == 1 && value == kBlob);
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
  require(object == kConnector && property >= 2);
  return request == nullptr || fails() ? -1 : 1;
}

int drmModeAtomicCommit(int fd, drmModeAtomicReqPtr request, uint32_t /*flags*/, void* /*user*/) {
  require_open(fd);
  return request == nullptr || fails() ? -1 : 0;
}
