// The same update on all kinds of boards: the display it reaches, or the log line if there is none.
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
  int reached = 1;  // index in connectors; -1: none
  const char* log = "drmModeObjectSetProperty ret 0";
};

class Boards : public DaemonTest, public testing::WithParamInterface<Case> {};

TEST_P(Boards, AreToldApart) {
  const Case& given = GetParam();
  board::Description description;
  description.connectors = given.connectors;
  if (given.primary[0] != '\0') {
    description.properties["vendor.hwc.device.primary"] = given.primary;
  }
  start_with_documents(description);
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
        Case{"PanelFirstWhenNothingIsNamed", "", {connector(kHdmiA), connector(kEdp)}},
        Case{"NamedByType", "HDMI-A", {connector(kEdp), connector(kHdmiA)}},
        Case{"NamedByTypeAndIndex",
             "HDMI-A-2",
             {connector(kHdmiA), connector(kHdmiA, true, 2), connector(kEdp)}},
        Case{"NamedButDisconnected", "HDMI-A-1", {connector(kHdmiA, false), connector(kDsi)}},
        Case{"TypeWithoutAName", "HDMI-A-1", {connector(kUnnamed), connector(kHdmiA)}},
        Case{"NoPanelAndNothingNamed", "", {connector(kHdmiA)}, -1, "can't find primary info"},
        Case{"OnlyATypeWithoutAName",
             "unknown",
             {connector(kUnnamed)},
             -1,
             "can't find primary info"}),
    [](const auto& parameter) { return parameter.param.name; });

constexpr char kGamma[] = R"({"op":"replace","path":"/gamma/gammaEnable","value":0})";
constexpr char kDci[] = R"({"op":"replace","path":"/dci/dciEnable","value":0})";

struct Fault {
  const char* name;
  void (*make)(board::Description& description);
  const char* change;
  std::vector<const char*> log;
};

class FaultyBoards : public DaemonTest, public testing::WithParamInterface<Fault> {};

TEST_P(FaultyBoards, AreServedAndSayWhatIsWrong) {
  board::Description description;
  GetParam().make(description);
  start_with_documents(description);
  change(GetParam().change);
  for (const char* text : GetParam().log)
    EXPECT_NE(board().log().find(text), std::string::npos) << text;
  EXPECT_FALSE(std::filesystem::exists(board().file("/board/baseparameter/14-0/cubic_lut")));
  EXPECT_TRUE(serves());
}

INSTANTIATE_TEST_SUITE_P(
    , FaultyBoards,
    testing::Values(Fault{"WithoutADisplayDevice",
                          [](auto& board) { board.faults.no_device = true; },
                          kGamma,
                          {"can't find primary info"}},
                    Fault{"WithoutAGammaProperty",
                          [](auto& board) { board.gamma_lut_size = 0; },
                          kGamma,
                          {"can't find GAMMA_LUT"}},
                    Fault{"WithAnotherTableSize",
                          [](auto& board) { board.gamma_lut_size = 256; },
                          kGamma,
                          {"drmModeObjectSetProperty ret -22"}},
                    Fault{"WithAnotherDisplayMaster",
                          [](auto& board) { board.faults.not_master = true; },
                          kGamma,
                          {"drmModeObjectSetProperty ret -13"}},
                    Fault{"WithoutAnEngine",
                          [](auto& board) { board.engine = board::Engine::kMissing; },
                          kDci,
                          {"failed to dlopen libhwpq_lite.so", "HWPQ context is not initialized"}},
                    Fault{"WithAnEngineThatGivesNoTable",
                          [](auto& board) { board.engine = board::Engine::kWithoutGet; },
                          kDci,
                          {"failed to dlsym hwpq_lite_get_3dlut", "save cubic lut data"}},
                    Fault{"WithAnEngineThatCannotCompute",
                          [](auto& board) { board.engine = board::Engine::kRunFails; },
                          kDci,
                          {"HWPQ run failed with error -5"}}),
    [](const auto& parameter) { return parameter.param.name; });

}  // namespace
}  // namespace scenario
