// The table cache. Input: the kind of file (a character: l a link, d a folder, p a pipe, f the
// bytes that follow, otherwise a valid cache with changes). For the last kind: its size (two
// bytes), then three bytes per change: the position and the bits to flip. In every case the tables
// must be correct, and afterwards the file is a valid cache or unchanged.

#include <cstdlib>
#include <cstring>
#include <span>
#include <string>

#include "fuzz/support/board.h"
#include "fuzz/support/check.h"
#include "fuzz/support/documents.h"
#include "j2s/generated_tables.h"

namespace {

constexpr char kCache[] = "/data/j2s-cache";
constexpr char kElsewhere[] = "/data/elsewhere";

const std::string& good_cache() {
  static const std::string cache = [] {
    j2s_ctx context = {};
    j2s_init(&context);
    j2s_deinit(&context);
    return fuzz::read_file(kCache);
  }();
  return cache;
}

size_t number(std::string_view bytes) {
  return static_cast<uint8_t>(bytes[0]) * size_t{256} + static_cast<uint8_t>(bytes[1]);
}

std::string changed_cache(std::string_view changes) {
  std::string cache = good_cache();
  if (changes.size() >= 2) {
    // Small numbers: the size differs by this number.
    cache.resize((cache.size() + number(changes)) % 65536);
    changes.remove_prefix(2);
  }
  for (; changes.size() >= 3 && !cache.empty(); changes.remove_prefix(3)) {
    char& byte = cache[number(changes) % cache.size()];
    byte = static_cast<char>(byte ^ changes[2]);
  }
  return cache;
}

void put_cache(char kind, std::string_view rest) {
  if (kind == 'l') fuzz::write_file(kElsewhere, rest);
  if (fuzz::put(kCache, kind, rest, kElsewhere)) return;
  fuzz::write_file(kCache, changed_cache(rest));
}

template <typename Record>
bool equal(const Record* table, int count, std::span<const Record> expected) {
  return count == static_cast<int>(expected.size()) &&
         std::memcmp(table, expected.data(), expected.size_bytes()) == 0;
}

void use_tables() {
  j2s_ctx context = {};
  j2s_init(&context);
  const j2s::GeneratedTables& tables = j2s::generated_tables();
  fuzz::require(equal(context.obj_table, context.obj_count, tables.objs) &&
                    equal(context.struct_table, context.struct_count, tables.structs),
                "the tables are correct");
  std::free(j2s_dump_struct(&context, "csc", nullptr));
  j2s_deinit(&context);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  fuzz::use_full_tables(true);
  setenv("J2S_CACHE", kCache, 1);
  unsetenv("J2S_NO_CACHE");
  (void)good_cache();
  const std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
  put_cache(static_cast<char>(data[0]), rest);
  {
    const fuzz::NoDescriptorLeft check;
    use_tables();
    use_tables();
  }
  const std::string left = fuzz::read_file(kCache);
  if (data[0] == 'l') {
    fuzz::require(left == rest, "no link is followed");
  } else {
    fuzz::require(
        left.empty() || left.substr(sizeof(j2s_ctx)) == good_cache().substr(sizeof(j2s_ctx)),
        "the file is a valid cache");
  }
  return 0;
}
