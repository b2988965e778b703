// The libraries as the daemon meets them: loaded by path, entry points by name.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <memory>

#include "engine/context.h"
#include "engine/hwpq_lite.h"
#include "temporary_folder.h"

namespace {

struct CloseLibrary {
  void operator()(void* library) const { dlclose(library); }
};

class EngineLibrary : public testing::Test {
 protected:
  EngineLibrary() : library_(dlopen(ENGINE_LIBRARY, RTLD_NOW | RTLD_GLOBAL)) {}

  template <typename Function>
  Function* find(const char* name) {
    return reinterpret_cast<Function*>(dlsym(library_.get(), name));
  }

  std::unique_ptr<void, CloseLibrary> library_;
  decltype(hwpq_lite_init)* init_ = find<decltype(hwpq_lite_init)>("hwpq_lite_init");
  decltype(hwpq_lite_run)* run_ = find<decltype(hwpq_lite_run)>("hwpq_lite_run");
  decltype(hwpq_lite_save_3dlut)* save_ =
      find<decltype(hwpq_lite_save_3dlut)>("hwpq_lite_save_3dlut");
  decltype(hwpq_lite_deinit)* deinit_ = find<decltype(hwpq_lite_deinit)>("hwpq_lite_deinit");
  decltype(hwpq_lite_get_3dlut)* get_ = find<decltype(hwpq_lite_get_3dlut)>("hwpq_lite_get_3dlut");
  std::array<uint32_t, 72> configuration_ = {1, 5, 9, 9};
};

TEST_F(EngineLibrary, RefusesWhatItCannotServe) {
  using namespace board::engine;
  TemporaryFolder folder;
  const std::string file = folder.path() / "table.cube";
  EXPECT_EQ(init_(nullptr, configuration_.data()), kNullArgument);
  void* handle = nullptr;
  EXPECT_EQ(init_(&handle, nullptr), kNullArgument);
  std::array<uint32_t, 72> other = {1, 5, 9, 10};
  EXPECT_EQ(init_(&handle, other.data()), kUnknownConfiguration);
  EXPECT_EQ(handle, nullptr);

  ASSERT_EQ(init_(&handle, configuration_.data()), kDone);
  cubic_lut_data record{};
  record.size = 7;
  EXPECT_EQ(get_(handle, &record), kNotRun);
  EXPECT_EQ(record.size, 7);
  EXPECT_EQ(save_(handle, file.c_str()), kNotRun);
  EXPECT_EQ(run_(nullptr, configuration_.data()), kNullArgument);
  EXPECT_EQ(run_(handle, other.data()), kUnknownConfiguration);
  EXPECT_EQ(save_(handle, nullptr), kNullArgument);
  EXPECT_EQ(get_(handle, nullptr), kNullArgument);
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(deinit_(handle), kDone);
  EXPECT_EQ(deinit_(nullptr), kNullArgument);
}

TEST(EngineContext, KeepsItsTableWhenALaterRunFails) {
  TemporaryFolder folder;
  folder.write("pq.json", R"({"pq_tuning_param": {}})");
  board::engine::Context context;
  ASSERT_EQ(run(context, folder.path() / "pq.json"), board::engine::kDone);
  EXPECT_EQ(run(context, folder.path() / "gone.json"), board::engine::kUnreadableDocument);
  ASSERT_TRUE(context.lut);
  EXPECT_EQ(context.lut->points, board::Lut3d::identity().points);
}

TEST(EngineContext, LeavesNoPartOfAFile) {
  TemporaryFolder folder;
  const std::string file = folder.path() / "table.cube";
  const board::engine::Context context{board::Lut3d::identity()};
  EXPECT_EQ(save(context, (file + "/below-no-folder").c_str()), board::engine::kNotWritten);

  rlimit usual{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &usual), 0);
  const auto usual_action = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit half_a_table = {60000, usual.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &half_a_table), 0);
  EXPECT_EQ(save(context, file.c_str()), board::engine::kNotWritten);
  setrlimit(RLIMIT_FSIZE, &usual);
  (void)std::signal(SIGXFSZ, usual_action);
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(save(context, file.c_str()), board::engine::kDone);
}

}  // namespace
