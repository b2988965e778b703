#include "display_service/display_service.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>

#include "drm/display_state.h"
#include "properties/property_store.h"
#include "screen/state_file.h"
#include "temporary_folder.h"

using namespace std::chrono_literals;
using board::screen::DisplayState;

namespace {

constexpr char kDumpPath[] = "vendor.tvinput.qxpq.dump.path";

// A running board of 32x16 pixels as its display service sees it.
class DisplayServiceTest : public testing::Test {
 protected:
  void start(const std::string& description = R"({"dump": {"width": 32, "height": 16}})") {
    folder_.write("description.json", description);
    std::filesystem::create_directories(data());
    const auto board = board::read_description(folder_.path() / "description.json");
    board::create_display(folder_.path(), board);
    service_.emplace(board, folder_.path(), data());
  }
  std::filesystem::path data() const { return folder_.path() / "data"; }

  void serve() { service_->serve(0ms); }
  void redraw() {
    folder_.write("screen/redraw", std::to_string(++redraws_));
    serve();
  }
  void set(const std::string& property, const std::string& value) {
    ASSERT_EQ(board::PropertyStore(folder_.path() / "properties").set(property, value), 0);
    serve();
  }
  std::string property(const std::string& name) { return folder_.read("properties/" + name); }

  void store_table(const board::Lut3d& lut) {
    const cubic_lut_data record = to_record(lut);
    folder_.write("baseparameter/14-0/cubic_lut",
                  {reinterpret_cast<const char*>(&record), sizeof(record)});
  }
  void write_document(const std::string& dci) {
    folder_.write("data/pq_config.json", R"({"pq_tuning_param": {"dci": )" + dci + "}}");
  }
  DisplayState on_screen() {
    return board::screen::read_state(board::screen::state_file(folder_.path()));
  }

  TemporaryFolder folder_;
  std::optional<board::screen::DisplayService> service_;
  int redraws_ = 0;
};

board::Lut3d darkening_table() {
  board::Lut3d lut = board::Lut3d::identity();
  for (board::Rgb16& point : lut.points)
    point.red = point.green = point.blue = 100;
  return lut;
}

TEST_F(DisplayServiceTest, TakesDciOutWhileTheAnnouncedDocumentHasItOff) {
  start();
  store_table(darkening_table());
  write_document(R"({"dciEnable": 0})");
  redraw();
  EXPECT_EQ(on_screen().lut->points, darkening_table().points) << "not announced yet";
  set("vendor.tvinput.qxpq.timeline", "1");
  redraw();
  EXPECT_EQ(on_screen().lut->points, board::Lut3d::identity().points);
  write_document(R"({"dciEnable": 1})");
  set("vendor.tvinput.qxpq.timeline", "2");
  redraw();
  EXPECT_EQ(on_screen().lut->points, darkening_table().points);
}

TEST_F(DisplayServiceTest, DumpsWithoutARedrawInTheEnd) {
  start(R"({"dump": {"width": 33, "height": 17, "format_out": "nv15"}})");
  set("vendor.tvinput.qxpq.dump.out", "1");
  const auto start = std::chrono::steady_clock::now();
  while (property(kDumpPath).empty() && std::chrono::steady_clock::now() < start + 10s) {
    service_->serve(10s);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, 4s) << "the daemon's patience";
  EXPECT_EQ(property(kDumpPath), data() / "pq_dump_out_32x16.nv15") << "cut to what nv15 holds";
}

TEST_F(DisplayServiceTest, PublishesNoPathWhenThereIsNoDump) {
  start(R"({"dump": {"width": 32, "height": 16, "format_in": "yuv"}})");
  set("vendor.tvinput.qxpq.dump.in", "1");
  redraw();
  std::filesystem::remove_all(data());
  set("vendor.tvinput.qxpq.dump.out", "1");
  redraw();
  EXPECT_EQ(property(kDumpPath), "");
}

TEST_F(DisplayServiceTest, LogsWhatItIsToldOfOnce) {
  start();
  testing::internal::CaptureStderr();
  set("vendor.tvinput.qxpq.timeline", "7");
  set("vendor.tvinput.qxpq.timeline", "7");
  set("vendor.other", "1");
  const std::string log = testing::internal::GetCapturedStderr();
  const std::string line =
      "display_service: vendor.tvinput.qxpq.timeline changed from \"\" to \"7\"\n";
  EXPECT_EQ(log.find(line), 0U) << log;
  EXPECT_EQ(log.find("changed", line.size()), std::string::npos) << log;
}

TEST(StateFile, KeepsAWholeState) {
  TemporaryFolder folder;
  DisplayState state;
  state.controls = {10, 20, 30, 40};
  state.gamma = {{0, 65535}, {1, 2}, {3, 4}};
  state.lut = darkening_table();
  state.pattern = board::screen::PatternColour{7, 8, 255};
  write_state(state, folder.path() / "state");
  const DisplayState read = board::screen::read_state(folder.path() / "state");
  EXPECT_EQ(read.controls, state.controls);
  EXPECT_EQ(read.gamma, state.gamma);
  EXPECT_EQ(read.lut->points, state.lut->points);
  EXPECT_EQ(read.pattern, state.pattern);
}

}  // namespace
