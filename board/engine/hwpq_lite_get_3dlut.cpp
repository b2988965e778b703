// In a file of its own, because an older engine is the same library without it.
#include "engine/context.h"
#include "engine/hwpq_lite.h"

namespace engine = board::engine;

int32_t hwpq_lite_get_3dlut(void* handle, cubic_lut_data* lut) noexcept {
  if (handle == nullptr) return complain(engine::kNullArgument, "get_3dlut: the handle is null");
  if (lut == nullptr) return complain(engine::kNullArgument, "get_3dlut: the record is null");
  const auto& context = *static_cast<engine::Context*>(handle);
  if (!context.lut) return complain(engine::kNotRun, "get_3dlut: there is no table, run first");
  *lut = board::to_record(*context.lut);
  return engine::kDone;
}
