#include "engine/hwpq_lite.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>

#include "engine/context.h"

namespace engine = board::engine;

namespace {

constexpr char kDocument[] = "/data/vendor/qxalgo/pq_config.json";
constexpr size_t kConfigurationSize = 288;
using ConfigurationWords = std::array<uint32_t, 4>;
constexpr ConfigurationWords kKnownConfiguration = {1, 5, 9, 9};
static_assert(sizeof(ConfigurationWords) <= kConfigurationSize);

engine::Result check_arguments(const void* handle, const void* configuration) {
  if (handle == nullptr) return complain(engine::kNullArgument, "the handle is null");
  if (configuration == nullptr) return complain(engine::kNullArgument, "the configuration is null");
  ConfigurationWords words{};
  std::memcpy(words.data(), configuration, sizeof(words));
  if (words == kKnownConfiguration) return engine::kDone;
  return complain(engine::kUnknownConfiguration, "the configuration must begin with 1, 5, 9, 9");
}

}  // namespace

int32_t hwpq_lite_init(void** handle, void* configuration) noexcept {
  if (const auto result = check_arguments(handle, configuration); result < 0) return result;
  *handle = std::make_unique<engine::Context>().release();
  return engine::kDone;
}

int32_t hwpq_lite_run(void* handle, void* configuration) noexcept {
  if (const auto result = check_arguments(handle, configuration); result < 0) return result;
  return engine::run(*static_cast<engine::Context*>(handle), kDocument);
}

int32_t hwpq_lite_save_3dlut(void* handle, const char* path) noexcept {
  if (handle == nullptr) return complain(engine::kNullArgument, "save_3dlut: the handle is null");
  if (path == nullptr) return complain(engine::kNullArgument, "save_3dlut: the path is null");
  return save(*static_cast<engine::Context*>(handle), path);
}

int32_t hwpq_lite_deinit(void* handle) noexcept {
  if (handle == nullptr) return complain(engine::kNullArgument, "deinit: the handle is null");
  const std::unique_ptr<engine::Context> freed(static_cast<engine::Context*>(handle));
  return engine::kDone;
}
