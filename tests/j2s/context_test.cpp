#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>

#include "j2s/generated_tables.h"
#include "tests/j2s/synthetic.h"

namespace j2s_test {
namespace {

constexpr size_t kObjsInCache = 80;
const auto kMembers = static_cast<int32_t>(j2s::generated_tables().objs.size());
const size_t kCacheSize = kObjsInCache + j2s::generated_tables().objs.size_bytes() +
                          j2s::generated_tables().structs.size_bytes();

class Context : public testing::Test {
 protected:
  Context() : path_(testing::TempDir() + "j2s_cache_" + std::to_string(getpid())) {
    setenv("J2S_CACHE", path_.c_str(), 1);
    unsetenv("J2S_NO_CACHE");
  }
  ~Context() override { (void)remove(path_.c_str()); }

  [[nodiscard]] std::string content() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void write(const std::string& bytes) const {
    std::ofstream(path_, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  // A cache file as the library writes it.
  [[nodiscard]] std::string fresh_cache() const {
    (void)remove(path_.c_str());
    j2s_ctx ctx = {};
    j2s_init(&ctx);
    j2s_deinit(&ctx);
    return content();
  }
  static bool uses_cache(const j2s_ctx& ctx) {
    return ctx.data_list != nullptr && ctx.data_list->count == 1 &&
           static_cast<char*>(ctx.data_list->entries[0].ptr) + kObjsInCache ==
               reinterpret_cast<char*>(ctx.obj_table);
  }

  std::string path_;
};

TEST_F(Context, WithoutCacheTouchesNoFileAndKeepsTheCallersFlags) {
  setenv("J2S_NO_CACHE", "", 1);
  j2s_ctx ctx = {};
  ctx.pretty_print = 3;
  ctx.emit_desc = ctx.emit_enums = 1;
  j2s_init(&ctx);
  EXPECT_NE(access(path_.c_str(), F_OK), 0);
  EXPECT_TRUE(ctx.obj_count == kMembers && ctx.struct_count == 8);
  EXPECT_EQ(ctx.magic == 115982392, kMembers == 109) << "the schema's fingerprint";
  EXPECT_TRUE(ctx.root_struct == 7 && ctx.owns_data == 1);
  EXPECT_EQ(ctx.data_list, nullptr);
  EXPECT_EQ(ctx.pretty_print + ctx.emit_desc + ctx.emit_enums, 5);
}

TEST_F(Context, WritesACacheForThisUserAloneAndUsesItNextTime) {
  EXPECT_EQ(fresh_cache().size(), kCacheSize);
  struct stat status = {};
  ASSERT_EQ(stat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);

  j2s_ctx ctx = {};
  EXPECT_EQ(stderr_of([&] { j2s_init(&ctx); }), "");
  EXPECT_TRUE(uses_cache(ctx));
  EXPECT_STREQ(ctx.struct_table[7].name, "pq_config");
  j2s_deinit(&ctx);
}

TEST_F(Context, TakesFlagsAndRootButNoDescriptionsFromTheCache) {
  j2s_ctx header = {};
  std::string cache = fresh_cache();
  std::memcpy(&header, cache.data(), sizeof header);
  header.pretty_print = 1;
  header.emit_desc = 1;
  header.root_struct = 2;
  header.desc_count = 109;
  std::memset(&header.desc_table, 0x5a, sizeof header.desc_table);
  std::memcpy(cache.data(), &header, sizeof header);
  write(cache);
  j2s_ctx ctx = {};
  j2s_init(&ctx);
  EXPECT_TRUE(uses_cache(ctx));
  EXPECT_TRUE(ctx.pretty_print == 1 && ctx.emit_desc == 1 && ctx.emit_enums == 0);
  EXPECT_TRUE(ctx.root_struct == 2 && ctx.desc_count == 0 && ctx.desc_table == nullptr);
  j2s_deinit(&ctx);
}

TEST_F(Context, RebuildsAndRewritesACacheThatIsNotItsOwn) {
  struct Damage {
    const char* name;
    size_t offset;  // of a byte that is inverted
    size_t size;
  };
  const std::string good = fresh_cache();
  for (const Damage& damage :
       {Damage{"magic", 0, kCacheSize}, Damage{"obj_count", 4, kCacheSize},
        Damage{"struct_count", 16, kCacheSize}, Damage{"enum_count", 28, kCacheSize},
        Damage{"enum_value_count", 40, kCacheSize}, Damage{"root_struct", 64, kCacheSize},
        Damage{"chain of members", 80 + 88 * 5 + 80, kCacheSize},
        Damage{"last structure", kCacheSize - 1, kCacheSize}, Damage{"empty", 0, 0},
        Damage{"short", 0, 80}, Damage{"cut", 0, kCacheSize - 1},
        Damage{"long", 0, kCacheSize + 1}}) {
    std::string bad = good;
    bad.resize(damage.size);
    if (!bad.empty() && damage.size == kCacheSize) {
      bad[damage.offset] = static_cast<char>(~bad[damage.offset]);
    }
    write(bad);
    j2s_ctx ctx = {};
    ctx.pretty_print = 1;
    EXPECT_EQ(stderr_of([&] { j2s_init(&ctx); }), "") << damage.name;
    EXPECT_FALSE(uses_cache(ctx)) << damage.name;
    EXPECT_TRUE(ctx.obj_count == kMembers && ctx.root_struct == 7 && ctx.pretty_print == 1);
    j2s_deinit(&ctx);
    EXPECT_EQ(content().substr(kObjsInCache), good.substr(kObjsInCache)) << damage.name;
  }
}

TEST_F(Context, FollowsNoLinkAndWaitsForNoPipe) {
  const std::string target = path_ + "_target";
  std::ofstream(target) << "precious";
  ASSERT_EQ(symlink(target.c_str(), path_.c_str()), 0);
  j2s_ctx ctx = {};
  const std::string message = stderr_of([&] { j2s_init(&ctx); });
  EXPECT_NE(message.find("[j2s_read_file]: failed to open: '" + path_ + "'\n"), std::string::npos);
  EXPECT_EQ(ctx.obj_count, kMembers);
  struct stat status = {};
  EXPECT_EQ(stat(target.c_str(), &status), 0);
  EXPECT_EQ(status.st_size, 8);
  (void)remove(target.c_str());
  (void)remove(path_.c_str());

  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  (void)stderr_of([&] { j2s_init(&ctx); });
  EXPECT_EQ(ctx.obj_count, kMembers);
}

TEST_F(Context, AbortsOnACachePathItCannotHold) {
  setenv("J2S_CACHE", std::string(255, 'x').insert(0, 1, '/').c_str(), 1);
  j2s_ctx ctx = {};
  EXPECT_EXIT(j2s_init(&ctx), testing::KilledBySignal(SIGABRT), "J2S_CACHE holds 256 bytes");
}

TEST_F(Context, PutsChangedTablesRight) {
  setenv("J2S_NO_CACHE", "1", 1);
  j2s_ctx ctx = {};
  j2s_init(&ctx);
  ctx.obj_table[3].offset = 12345;
  ctx.struct_table[7].name[0] = 'X';
  j2s_init(&ctx);
  EXPECT_TRUE(ctx.obj_table[3].offset != 12345);
  EXPECT_STREQ(ctx.struct_table[7].name, "pq_config");
}

TEST(Registry, ReusesFreedSlotsAndFreesWhatItOwns) {
  j2s_ctx ctx = {};
  ctx.owns_data = 1;
  int not_owned = 0;
  void* first = j2s_alloc_data(&ctx, 16);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(std::count(static_cast<char*>(first), static_cast<char*>(first) + 16, 0), 16);
  EXPECT_EQ(j2s_add_data(&ctx, &not_owned, false), 0);
  ASSERT_NE(j2s_alloc_data(&ctx, 1), nullptr);
  EXPECT_EQ(ctx.data_list->count, 3);
  j2s_release_data(&ctx, &not_owned);  // forgotten, not freed
  j2s_release_data(&ctx, first);
  j2s_release_data(&ctx, std::malloc(1));  // unknown, but freed, too
  j2s_release_data(&ctx, nullptr);
  EXPECT_EQ(j2s_add_data(&ctx, &not_owned, false), 0);
  EXPECT_EQ(ctx.data_list->count, 3);
  EXPECT_EQ(ctx.data_list->entries[0].ptr, &not_owned);
  j2s_deinit(&ctx);  // the leak checker sees what it misses
}

}  // namespace
}  // namespace j2s_test
