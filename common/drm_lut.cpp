#include "common/drm_lut.h"

#include <dlfcn.h>

#include <array>
#include <cstdint>
#include <memory>
#include <new>

#include <baseparameter_api.h>

#include "base/log.h"
#include "base/owner.h"
#include "common/drm_api.h"

namespace {

using pq::Priority;

constexpr char kLibrary[] = "libhwpq_lite.so";

// What init and run are given. The meaning of its words belongs to the library.
struct EngineConfiguration {
  std::array<uint32_t, 72> words;
};
static_assert(sizeof(EngineConfiguration) == 288);
constexpr EngineConfiguration kConfiguration = {{1, 5, 9, 9}};

// The engine's results are negative when it failed.
struct LutContext {
  void* handle;  // the library's own context; null: not open
  EngineConfiguration configuration;
  uint64_t reserved;
  void* library;  // null until loaded
  int (*init)(void** handle, EngineConfiguration* configuration);
  int (*run)(void* handle, EngineConfiguration* configuration);
  int (*save)(void* handle, const char* path);
  int (*deinit)(void* handle);
  int (*get)(void* handle, cubic_lut_data* table);
};

// Created at the first use, zeroed, and kept for the life of the process.
LutContext* context = nullptr;

void log_error(const char* text) {
  pq::log_display(Priority::kError, "%s", text);
}

template <typename Function>
void look_up(Function& entry, const char* name) {
  entry = reinterpret_cast<Function>(dlsym(context->library, name));
  if (entry == nullptr) {
    pq::log_display(Priority::kError, "failed to dlsym %s %s", name, dlerror());
  }
}

void load_library() {
  log_error("dlsymHwpq ---------------------------------s");
  if (context->library != nullptr) {
    pq::log_display(Priority::kWarning, "HWPQ context is already initialized");
    return;
  }
  context->library = dlopen(kLibrary, RTLD_NOW | RTLD_GLOBAL);
  if (context->library == nullptr) {
    pq::log_display(Priority::kError, "failed to dlopen %s %s", kLibrary, dlerror());
    return;
  }
  look_up(context->init, "hwpq_lite_init");
  look_up(context->run, "hwpq_lite_run");
  look_up(context->save, "hwpq_lite_save_3dlut");
  look_up(context->deinit, "hwpq_lite_deinit");
  look_up(context->get, "hwpq_lite_get_3dlut");
  log_error("dlsymHwpq ---------------------------------e");
}

void open_engine() {
  if (context->handle != nullptr) {
    log_error("hwpq context is already initialized");
    return;
  }
  if (context->init != nullptr) {
    context->configuration = kConfiguration;
    context->reserved = 0;
    context->init(&context->handle, &context->configuration);
  }
  log_error("drm_lut_init ---------------------------------e");
}

bool is_open() {
  if (context != nullptr && context->handle != nullptr) return true;
  log_error("HWPQ context is not initialized");
  return false;
}

// Keeps the computed table in the base parameters of the primary display.
int store_table() {
  baseparameter_api parameters;
  if (context->get != nullptr) {
    int fd = -1;
    unsigned int crtc_id = 0;
    unsigned int connector_type = 0;
    unsigned int connector_type_id = 0;
    unsigned int connector_id = 0;
    if (DrmApi().get_primary_info(&fd, &crtc_id, &connector_type, &connector_type_id,
                                  &connector_id) != 0) {
      log_error("can't find primary info");
      return -1;
    }
    const pq::UniqueFd device(fd);
    const std::unique_ptr<cubic_lut_data> table(new (std::nothrow) cubic_lut_data());  // zeroed
    if (!table) {
      log_error("no memory for the computed table");
      return -1;
    }
    context->get(context->handle, table.get());
    parameters.set_cubic_lut_data(connector_type, connector_type_id - 1, table.get());
    pq::log_display(Priority::kError, "save cubic lut data size %d", table->size);
  }
  log_error("save cubic lut data");
  return 0;
}

}  // namespace

int drm_lut_init() {
  if (context == nullptr) {
    context = new (std::nothrow) LutContext();
    if (context == nullptr) return -1;
  } else if (context->handle != nullptr) {
    pq::log_display(Priority::kWarning, "HWPQ context is already initialized");
    return 0;
  }
  log_error("drm_lut_init ---------------------------------s");
  load_library();
  open_engine();
  return 0;
}

int drm_lut_run() {
  if (!is_open()) return -1;
  if (context->run == nullptr) {
    log_error("HWPQ run function is not available");
    return -1;
  }
  const int result = context->run(context->handle, &context->configuration);
  if (result < 0) {
    pq::log_display(Priority::kError, "HWPQ run failed with error %d", result);
    return result;
  }
  return store_table();
}

int drm_lut_save_3dlut(const char* path) {
  if (!is_open()) return -1;
  if (context->save == nullptr) {
    log_error("HWPQ save 3D LUT function is not available");
    return -1;
  }
  const int result = context->save(context->handle, path);
  if (result < 0) {
    pq::log_display(Priority::kError, "HWPQ save 3D LUT failed with error %d", result);
    return result;
  }
  return 0;
}

int drm_lut_deinit() {
  if (context != nullptr && context->handle != nullptr) {
    if (context->deinit != nullptr) context->deinit(context->handle);
    context->handle = nullptr;
  }
  return 0;
}
