// libhwpq_lite.so: the 3D LUT engine as the daemon sees it, without its arithmetic. It checks that
// it is called in order and with its own handle.
#include <baseparameter_api.h>

#include <cstdlib>

namespace {

struct Engine {
  bool computed = false;
};
Engine* open_engine = nullptr;

void require_own(const void* handle) {
  if (handle == nullptr || handle != open_engine) std::abort();
}

}  // namespace

extern "C" {

int hwpq_lite_init(void** handle, void* /*configuration*/) {
  if (open_engine != nullptr) std::abort();  // opened twice
  open_engine = new Engine;
  *handle = open_engine;
  return 0;
}

int hwpq_lite_run(void* handle, void* /*configuration*/) {
  require_own(handle);
  open_engine->computed = true;
  return 0;
}

int hwpq_lite_save_3dlut(void* handle, const char* path) {
  require_own(handle);
  return open_engine->computed && path[0] == '/' ? 0 : -1;
}

int hwpq_lite_get_3dlut(void* handle, cubic_lut_data* table) {
  require_own(handle);
  table->size = 17;
  return 0;
}

int hwpq_lite_deinit(void* handle) {
  require_own(handle);
  delete open_engine;
  open_engine = nullptr;
  return 0;
}

}  // extern "C"
