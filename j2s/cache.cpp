#include "j2s/cache.h"

#include <fcntl.h>
#include <sys/uio.h>

#include <array>
#include <cstring>

#include "j2s/files.h"

namespace j2s {
namespace {

// Where the tables lie in a cache of `tables`.
struct Layout {
  explicit Layout(const GeneratedTables& tables)
      : structs(sizeof(j2s_ctx) + tables.objs.size_bytes()),
        end(structs + tables.structs.size_bytes()) {}

  static constexpr size_t kObjs = sizeof(j2s_ctx);
  size_t structs;
  size_t end;  // and the (empty) tables of enumerations
};

// Null unless it is a file of ours of the one size a cache can have. The path is tested first, so
// that a missing or foreign cache is skipped silently; the descriptor is tested again, since the
// path may lead elsewhere by then.
pq::TextPtr read_candidate(const char* path, size_t size) {
  struct stat status = {};
  if (stat(path, &status) != 0 || status.st_uid != getuid()) return nullptr;
  const pq::UniqueFd file = open_for_reading(path, O_NOFOLLOW, status);
  if (!file.valid() || status.st_uid != getuid()) return nullptr;
  if (S_ISREG(status.st_mode) && static_cast<size_t>(status.st_size) != size) return nullptr;
  pq::TextPtr content = read_opened(file, path, status);
  return static_cast<size_t>(status.st_size) == size ? std::move(content) : nullptr;
}

bool header_fits(const j2s_ctx& header, const GeneratedTables& tables) {
  const auto struct_count = static_cast<int32_t>(tables.structs.size());
  return header.magic == tables.magic &&
         header.obj_count == static_cast<int32_t>(tables.objs.size()) &&
         header.struct_count == struct_count && header.enum_count == 0 &&
         header.enum_value_count == 0 && header.root_struct >= -1 &&
         header.root_struct < struct_count;
}

// A damaged table could lead a conversion anywhere, so only the known tables are accepted.
bool tables_equal(const char* content, const Layout& layout, const GeneratedTables& tables) {
  return std::memcmp(content + Layout::kObjs, tables.objs.data(), tables.objs.size_bytes()) == 0 &&
         std::memcmp(content + layout.structs, tables.structs.data(),
                     tables.structs.size_bytes()) == 0;
}

}  // namespace

bool load_cache(const char* path, const GeneratedTables& tables, j2s_ctx& ctx) {
  const Layout layout(tables);
  pq::TextPtr content = read_candidate(path, layout.end);
  if (content == nullptr) return false;

  j2s_ctx cached = {};
  std::memcpy(&cached, content.get(), offsetof(j2s_ctx, data_list));
  if (!header_fits(cached, tables) || !tables_equal(content.get(), layout, tables)) return false;

  cached.obj_table = reinterpret_cast<j2s_obj*>(content.get() + Layout::kObjs);
  cached.struct_table = reinterpret_cast<j2s_struct*>(content.get() + layout.structs);
  cached.enum_table = reinterpret_cast<j2s_enum*>(content.get() + layout.end);
  cached.enum_value_table = reinterpret_cast<j2s_enum_value*>(content.get() + layout.end);
  cached.desc_count = 0;
  cached.desc_table = nullptr;
  if (j2s_add_data(&cached, content.get(), true) != 0) {
    j2s_deinit(&cached);
    return false;
  }
  (void)content.release();  // the registry's from here on
  ctx = cached;
  return true;
}

void write_cache(const char* path, const j2s_ctx& ctx) {
  // Neither through a link nor into a pipe without a reader.
  const pq::UniqueFd file(
      open(path, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
  if (!file.valid()) return;
  j2s_ctx header = ctx;
  header.desc_count = 0;
  const auto piece = [](void* table, int32_t count, size_t record_size) {
    return iovec{table, static_cast<size_t>(count) * record_size};
  };
  const std::array pieces = {
      iovec{&header, sizeof header},
      piece(ctx.obj_table, ctx.obj_count, sizeof(j2s_obj)),
      piece(ctx.struct_table, ctx.struct_count, sizeof(j2s_struct)),
      piece(ctx.enum_table, ctx.enum_count, sizeof(j2s_enum)),
      piece(ctx.enum_value_table, ctx.enum_value_count, sizeof(j2s_enum_value)),
  };
  // A torn file has the wrong size or the wrong tables, and is rewritten next time.
  [[maybe_unused]] const ssize_t written = writev(file.get(), pieces.data(), pieces.size());
}

bool is_cache_buffer(const j2s_ctx& ctx, const void* ptr) {
  // As numbers: most buffers are no cache, and may be shorter than the offset.
  return reinterpret_cast<uintptr_t>(ptr) + Layout::kObjs ==
         reinterpret_cast<uintptr_t>(ctx.obj_table);
}

}  // namespace j2s
