#include "common/drm_lut.h"

#include <dlfcn.h>

#include <array>
#include <cstdint>
#include <memory>
#include <new>

#include <baseparameter_api.h>

#include "base/log.h"
#include "common/primary_display.h"

namespace {

constexpr char kLibrary[] = "libhwpq_lite.so";

// The argument of init and run. The library defines the meaning of its words.
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

template <typename Function>
void look_up(Function& entry, const char* name) {
  entry = reinterpret_cast<Function>(dlsym(context->library, name));
  if (entry == nullptr) {
    pq::log_display("failed to dlsym %s %s", name, dlerror());
  }
}

void load_library() {
  pq::log_display("dlsymHwpq ---------------------------------s");
  if (context->library != nullptr) {
    pq::log_display(pq::Priority::kWarning, "HWPQ context is already initialized");
    return;
  }
  context->library = dlopen(kLibrary, RTLD_NOW | RTLD_GLOBAL);
  if (context->library == nullptr) {
    pq::log_display("failed to dlopen %s %s", kLibrary, dlerror());
    return;
  }
  look_up(context->init, "hwpq_lite_init");
  look_up(context->run, "hwpq_lite_run");
  look_up(context->save, "hwpq_lite_save_3dlut");
  look_up(context->deinit, "hwpq_lite_deinit");
  look_up(context->get, "hwpq_lite_get_3dlut");
  pq::log_display("dlsymHwpq ---------------------------------e");
}

void open_engine() {
  if (context->handle != nullptr) {
    pq::log_display("hwpq context is already initialized");
    return;
  }
  if (context->init != nullptr) {
    context->configuration = kConfiguration;
    context->reserved = 0;
    const int result = context->init(&context->handle, &context->configuration);
    if (result < 0) pq::log_display("HWPQ init failed with error %d", result);
  }
  pq::log_display("drm_lut_init ---------------------------------e");
}

bool is_open() {
  if (context != nullptr && context->handle != nullptr) return true;
  pq::log_display("HWPQ context is not initialized");
  return false;
}

// Keeps the computed table in the base parameters of the primary display.
int store_table() {
  baseparameter_api parameters;
  if (context->get != nullptr) {
    const auto display = pq::open_primary_display();
    if (!display) {
      pq::log_display("can't find primary info");
      return -1;
    }
    const std::unique_ptr<cubic_lut_data> table(new (std::nothrow) cubic_lut_data());  // zeroed
    if (!table) {
      pq::log_display("no memory for the computed table");
      return -1;
    }
    const int result = context->get(context->handle, table.get());
    // Still stored: the panel then shows the state of the engine, not an older table.
    if (result < 0) pq::log_display("HWPQ get 3D LUT failed with error %d", result);
    parameters.set_cubic_lut_data(display->connector_type, display->store_index(), table.get());
    pq::log_display("save cubic lut data size %d", table->size);
  }
  pq::log_display("save cubic lut data");
  return 0;
}

}  // namespace

int drm_lut_init() {
  if (context == nullptr) {
    context = new (std::nothrow) LutContext();
    if (context == nullptr) return -1;
  } else if (context->handle != nullptr) {
    pq::log_display(pq::Priority::kWarning, "HWPQ context is already initialized");
    return 0;
  }
  pq::log_display("drm_lut_init ---------------------------------s");
  load_library();
  open_engine();
  return 0;
}

int drm_lut_run() {
  if (!is_open()) return -1;
  if (context->run == nullptr) {
    pq::log_display("HWPQ run function is not available");
    return -1;
  }
  const int result = context->run(context->handle, &context->configuration);
  if (result < 0) {
    pq::log_display("HWPQ run failed with error %d", result);
    return result;
  }
  return store_table();
}

int drm_lut_save_3dlut(const char* path) {
  if (!is_open()) return -1;
  if (context->save == nullptr) {
    pq::log_display("HWPQ save 3D LUT function is not available");
    return -1;
  }
  const int result = context->save(context->handle, path);
  if (result < 0) {
    pq::log_display("HWPQ save 3D LUT failed with error %d", result);
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
