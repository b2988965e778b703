// Setting up a context: from the cache file, or from the tables that are compiled in.

#include <cstdlib>
#include <cstring>
#include <span>

#include "j2s/cache.h"
#include "j2s/generated_tables.h"
#include "j2s/j2s.h"
#include "j2s/report.h"

namespace {

constexpr const char* kDefaultCachePath = "/var/cache/j2s-cache";
constexpr size_t kMaxCachePath = 255;

// Null: the cache is switched off.
const char* cache_path() {
  if (std::getenv("J2S_NO_CACHE") != nullptr) return nullptr;
  const char* path = std::getenv("J2S_CACHE");
  if (path == nullptr) return kDefaultCachePath;
  if (std::strlen(path) > kMaxCachePath) {
    // A truncated path would name some other file, which would be overwritten.
    j2s::report_error("j2s_init",
                      "J2S_CACHE holds %zu bytes, more than the %zu a path may have: shorten it, "
                      "or set J2S_NO_CACHE",
                      std::strlen(path), kMaxCachePath);
    std::abort();
  }
  return path;
}

// Writes only records that differ: other threads may be converting and must see no change.
template <typename Record>
void restore(std::span<const Record> master, std::span<Record> working) {
  const auto count = static_cast<size_t>(master.size());  // signed in Android's standard library
  for (size_t i = 0; i < count; ++i) {
    if (std::memcmp(&working[i], &master[i], sizeof(Record)) != 0) working[i] = master[i];
  }
}

void use_generated_tables(const j2s::GeneratedTables& tables, j2s_ctx& ctx) {
  restore(tables.objs, tables.working_objs);
  restore(tables.structs, tables.working_structs);
  ctx.magic = tables.magic;
  ctx.obj_count = static_cast<int32_t>(tables.objs.size());
  ctx.obj_table = tables.working_objs.data();
  ctx.struct_count = static_cast<int32_t>(tables.structs.size());
  ctx.struct_table = tables.working_structs.data();
  ctx.enum_count = 0;
  ctx.enum_table = nullptr;
  ctx.enum_value_count = 0;
  ctx.enum_value_table = nullptr;
  ctx.desc_count = 0;
  ctx.desc_table = nullptr;
  ctx.root_struct = tables.root_struct;
  ctx.data_list = nullptr;
}

}  // namespace

void j2s_init(j2s_ctx* ctx) {
  const j2s::GeneratedTables& tables = j2s::generated_tables();
  const char* path = cache_path();
  if (path == nullptr || !j2s::load_cache(path, tables, *ctx)) {
    use_generated_tables(tables, *ctx);
    if (path != nullptr) j2s::write_cache(path, *ctx);
  }
  ctx->owns_data = 1;
}
