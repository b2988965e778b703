// The same change on boards of all kinds: which display it reaches, and what is said when none.
#include "drm/display_state.h"
#include "scenario/daemon_test.h"

namespace scenario {
namespace {

constexpr uint32_t kHdmiA = 11;
constexpr uint32_t kEdp = 14;
constexpr uint32_t kDsi = 16;
constexpr uint32_t kUnnamed = 19;  // newer than the daemon's names

board::Connector connector(uint32_t type, bool connected = true, uint32_t type_id = 1) {
  board::Connector result;
  result.type = type;
  result.type_id = type_id;
  result.connected = connected;
  return result;
}

struct Case {
  const char* name;
  const char* primary;  // property
  std::vector<board::Connector> connectors;
  int reached;  // index in connectors; -1: none
  const char* log;
};

class Boards : public DaemonTest, public testing::WithParamInterface<Case> {};

TEST_P(Boards, AreToldApart) {
  const Case& given = GetParam();
  board::Description description;
  description.connectors = given.connectors;
  if (given.primary[0] != '\0') {
    description.properties["vendor.hwc.device.primary"] = given.primary;
  }
  power_on(description);
  put_documents("tv");
  start_daemon();
  change(R"({"op":"replace","path":"/gamma/gammaTab_R/0","value":777})");
  const auto display = board::read_display_state(board().file("/board"));
  for (size_t i = 0; i < display.connectors.size(); ++i) {
    const auto& red = display.connectors[i].gamma.red;
    const bool reached = !red.empty() && red[0] == 777;
    EXPECT_EQ(reached, static_cast<int>(i) == given.reached) << display.connectors[i].name;
  }
  EXPECT_NE(board().log().find(given.log), std::string::npos) << given.log;
}

INSTANTIATE_TEST_SUITE_P(
    , Boards,
    testing::Values(
        Case{"PanelFirstWhenNothingIsNamed",
             "",
             {connector(kHdmiA), connector(kEdp)},
             1,
             "drmModeObjectSetProperty ret 0"},
        Case{"NamedByType",
             "HDMI-A",
             {connector(kEdp), connector(kHdmiA)},
             1,
             "drmModeObjectSetProperty ret 0"},
        Case{"NamedByTypeAndIndex",
             "HDMI-A-2",
             {connector(kHdmiA), connector(kHdmiA, true, 2), connector(kEdp)},
             1,
             "drmModeObjectSetProperty ret 0"},
        Case{"NamedButDisconnected",
             "HDMI-A-1",
             {connector(kHdmiA, false), connector(kDsi)},
             1,
             "drmModeObjectSetProperty ret 0"},
        Case{"NoPanelAndNothingNamed", "", {connector(kHdmiA)}, -1, "can't find primary info"},
        Case{"TypeWithoutAName",
             "HDMI-A-1",
             {connector(kUnnamed), connector(kHdmiA)},
             1,
             "drmModeObjectSetProperty ret 0"},
        Case{"OnlyATypeWithoutAName",
             "unknown",
             {connector(kUnnamed)},
             -1,
             "can't find primary info"}),
    [](const auto& parameter) { return parameter.param.name; });

class FaultyBoards : public DaemonTest {
 protected:
  void start(const board::Description& description) {
    power_on(description);
    put_documents("tv");
    start_daemon();
  }
  // The daemon serves on, and has said this.
  void expect_logged(const char* text) {
    EXPECT_NE(board().log().find(text), std::string::npos) << text;
    EXPECT_TRUE(serves());
  }
  static constexpr char kGammaChange[] =
      R"({"op":"replace","path":"/gamma/gammaEnable","value":0})";
  static constexpr char kDciChange[] = R"({"op":"replace","path":"/dci/dciEnable","value":0})";
};

TEST_F(FaultyBoards, WithoutADisplayDevice) {
  board::Description description;
  description.faults.no_device = true;
  start(description);
  change(kGammaChange);
  expect_logged("can't find primary info");
}

TEST_F(FaultyBoards, WithoutAGammaProperty) {
  board::Description description;
  description.gamma_lut_size = 0;
  start(description);
  change(kGammaChange);
  expect_logged("can't find GAMMA_LUT");
}

TEST_F(FaultyBoards, WithAnotherTableSize) {
  board::Description description;
  description.gamma_lut_size = 256;
  start(description);
  change(kGammaChange);
  expect_logged("drmModeObjectSetProperty ret -22");
}

TEST_F(FaultyBoards, WithAnotherDisplayMaster) {
  board::Description description;
  description.faults.not_master = true;
  start(description);
  change(kGammaChange);
  expect_logged("drmModeObjectSetProperty ret -13");
}

TEST_F(FaultyBoards, WithoutAnEngine) {
  board::Description description;
  description.engine = board::Engine::kMissing;
  start(description);
  change(kDciChange);
  expect_logged("failed to dlopen libhwpq_lite.so");
  expect_logged("HWPQ context is not initialized");
}

TEST_F(FaultyBoards, WithAnEngineThatGivesNoTable) {
  board::Description description;
  description.engine = board::Engine::kWithoutGet;
  start(description);
  change(kDciChange);
  expect_logged("failed to dlsym hwpq_lite_get_3dlut");
  expect_logged("save cubic lut data");
  EXPECT_FALSE(std::filesystem::exists(board().file("/board/baseparameter/14-0/cubic_lut")));
}

TEST_F(FaultyBoards, WithAnEngineThatCannotCompute) {
  board::Description description;
  description.engine = board::Engine::kRunFails;
  start(description);
  change(kDciChange);
  expect_logged("HWPQ run failed with error -5");
}

}  // namespace
}  // namespace scenario
