// Updates of the PQ document: the stored values, and the effects on the display in their order.
#include <baseparameter_api.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "drm/display_state.h"
#include "scenario/daemon_test.h"

namespace scenario {
namespace {

constexpr char kTimeline[] = "vendor.tvinput.qxpq.timeline";

class Update : public DaemonTest {
 protected:
  const cJSON* section(const char* name) {
    document_ = pqclient::parse_json(board().read(kPqDocument));
    return cJSON_GetObjectItemCaseSensitive(
        cJSON_GetObjectItemCaseSensitive(document_.get(), "pq_tuning_param"), name);
  }
  double stored(const char* section_name, const char* member) {
    return cJSON_GetNumberValue(cJSON_GetObjectItemCaseSensitive(section(section_name), member));
  }
  std::vector<int> stored_table(const char* member) { return table(section("gamma"), member); }
  board::DisplayState display() { return board::read_display_state(board().file("/board")); }
  board::PictureControls controls() { return display().connectors.at(0).controls.value(); }
  std::string timeline() { return board().property(kTimeline).value_or("unset"); }
  std::string kept_in_store(const char* file) {
    return board().read(std::string("/board/baseparameter/14-0/") + file);
  }

  std::filesystem::file_time_type written(const std::string& path_on_board) {
    return std::filesystem::last_write_time(board().file(path_on_board));
  }

  int lines_with(const std::string& text) {
    const std::string log = board().log();
    int count = 0;
    for (size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1))
      ++count;
    return count;
  }

  // Succeeds if the log contains these texts in this order.
  testing::AssertionResult logged_in_order(const std::vector<std::string>& texts) {
    const std::string log = board().log();
    size_t at = 0;
    for (const std::string& text : texts) {
      at = log.find(text, at);
      if (at == std::string::npos) {
        return testing::AssertionFailure() << "not there, or too early: " << text;
      }
    }
    return testing::AssertionSuccess();
  }

 private:
  pqclient::JsonPtr document_;
};

std::vector<int> scaled(std::vector<int> table, int gain) {
  for (int& entry : table)
    entry = std::min((entry * gain + 128) / 256, 65535);
  return table;
}

std::vector<int> as_ints(const std::vector<uint16_t>& table) {
  return {table.begin(), table.end()};
}

TEST_F(Update, LowLatencySetsControlsAndScaledGammaAfterTheRedraw) {
  start_with_documents();
  change(R"({"op":"replace","path":"/csc/cscMode","value":"LOW_LATENCY_MODE"})");
  change(R"({"op":"replace","path":"/csc/cscRGain","value":300})");
  change(R"({"op":"replace","path":"/csc/cscBrightness","value":511})");
  EXPECT_EQ(stored("csc", "cscBrightness"), 511);
  EXPECT_EQ(controls().brightness, 100U);
  EXPECT_EQ(controls().hue, static_cast<uint32_t>(stored("csc", "cscHue") / 511 * 100));
  EXPECT_EQ(as_ints(display().connectors[0].gamma.red), scaled(stored_table("gammaTab_R"), 300));
  EXPECT_EQ(kept_in_store("brightness").substr(0, 3), "100");
  EXPECT_EQ(timeline(), "unset");
  EXPECT_TRUE(logged_in_order({"LOW_LATENCY", "after fork am", "set_3x1d_gamma start"}));
}

TEST_F(Update, LowLatencyWithoutEnableIsNeutral) {
  start_with_documents();
  change(R"({"op":"replace","path":"/csc/cscMode","value":"LOW_LATENCY_MODE"})");
  change(R"({"op":"replace","path":"/csc/cscEnable","value":0})");
  EXPECT_EQ(controls().brightness, 50U);
  EXPECT_EQ(controls().contrast, 50U);
  EXPECT_EQ(controls().saturation, 50U);
  EXPECT_EQ(controls().hue, 50U);
  EXPECT_EQ(as_ints(display().connectors[0].gamma.blue), stored_table("gammaTab_B"));
}

TEST_F(Update, HighQualityIsNeutralButForTheGainsAndTellsTheDisplayService) {
  start_with_documents();
  board().set_property(kTimeline, "2147483647");
  change(R"({"op":"replace","path":"/csc/cscMode","value":"HIGH_QUALITY_MODE"})");
  EXPECT_EQ(controls().brightness, 50U);
  EXPECT_EQ(timeline(), "-2147483648");
  change(R"({"op":"add","path":"/csc","value":{"cscEnable":0,"cscGGain":127}})");
  EXPECT_EQ(as_ints(display().connectors[0].gamma.green), scaled(stored_table("gammaTab_G"), 127));
  EXPECT_EQ(as_ints(display().connectors[0].gamma.red), scaled(stored_table("gammaTab_R"), 0));
  EXPECT_EQ(timeline(), "-2147483647");
  EXPECT_TRUE(logged_in_order({"HIGH_QUALITY", "set_3x1d_gamma end", "before execl am"}));
}

TEST_F(Update, DciAcmAndSharpnessEachComputeANumberedLut) {
  start_with_documents();
  change(R"({"op":"replace","path":"/dci/dciEnable","value":1})");
  EXPECT_TRUE(logged_in_order({"run drm_lut_init start", "drm_lut_init ----", "save cubic lut data",
                               "run drm_lut_init end", "before execl am"}));
  EXPECT_EQ(timeline(), "1");
  EXPECT_LE(written(std::string("/board/properties/") + kTimeline), written("/data/lut_0.cube"))
      << "the display service is told before the table is computed";
  change(R"({"op":"replace","path":"/acm/lumGain","value":512})");
  change(R"({"op":"replace","path":"/sharp/sharpPeakingGain","value":9})");
  EXPECT_EQ(timeline(), "3");
  for (const char* file : {"/data/lut_0.cube", "/data/lut_1.cube", "/data/lut_2.cube"}) {
    EXPECT_NE(board().read(file).find("LUT_3D_SIZE 17"), std::string::npos) << file;
  }
  EXPECT_EQ(kept_in_store("cubic_lut").size(), sizeof(cubic_lut_data));
  board().restart();
  ASSERT_TRUE(board().wait_until_listening(board::kDaemonPort));
  std::filesystem::remove(board().file("/data/lut_0.cube"));
  change(R"({"op":"replace","path":"/dci/dciEnable","value":0})");
  EXPECT_TRUE(std::filesystem::exists(board().file("/data/lut_0.cube")));
}

TEST_F(Update, LutFilesStopWhileDataIsNearlyFullAndTheTableIsStoredAllTheSame) {
  start_with_documents("tv", {.hurry = 20});
  const auto file_after = [&](const char* space, int number) {
    board().write("/board/data_space", space);
    std::filesystem::remove_all(board().file("/board/baseparameter/14-0/cubic_lut"));
    change(R"({"op":"replace","path":"/dci/dciEnable","value":1})");
    EXPECT_EQ(kept_in_store("cubic_lut").size(), sizeof(cubic_lut_data)) << space;
    return std::filesystem::exists(board().file("/data/lut_" + std::to_string(number) + ".cube"));
  };
  EXPECT_TRUE(file_after("512 64", 0));
  EXPECT_FALSE(file_after("512 63", 1));
  EXPECT_FALSE(file_after("512 62", 2));
  EXPECT_EQ(lines_with("no LUT files"), 1);
  EXPECT_EQ(lines_with("63 of 512 MiB are free in /data"), 1);
  EXPECT_TRUE(file_after("10000 500", 3)) << "there is room again, and numbers go on";
  EXPECT_FALSE(file_after("10000 499", 4));
  EXPECT_EQ(lines_with("no LUT files"), 2);
}

TEST_F(Update, LutFilesThatTheBoardForbidsAreReportedOnce) {
  start_with_documents("tv", {.hurry = 20});
  if (board().isolation() == board::Isolation::kProot && ::geteuid() == 0) {
    GTEST_SKIP() << "the daemon is root here, and may write everywhere";
  }
  const std::filesystem::path data = board().file("/data");
  const auto closed = std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec;
  std::filesystem::permissions(data, closed);
  for (int i = 0; i < 2; ++i)
    change(R"({"op":"replace","path":"/dci/dciEnable","value":1})");
  EXPECT_EQ(lines_with("no LUT files: cannot write /data/lut_0.cube: Permission denied"), 1);
  EXPECT_EQ(lines_with("no LUT files"), 1);
  EXPECT_EQ(kept_in_store("cubic_lut").size(), sizeof(cubic_lut_data));
  std::filesystem::permissions(data, std::filesystem::perms::owner_all);
}

TEST_F(Update, AnEngineThatIsMissingIsNotTakenForAForbiddenFile) {
  start_with_documents("noengine");
  change(R"({"op":"replace","path":"/dci/dciEnable","value":1})");
  EXPECT_EQ(lines_with("failed to dlopen"), 1);
  EXPECT_EQ(lines_with("no LUT files"), 0);
}

TEST_F(Update, GammaTablesAreLoadedWithoutTheGains) {
  start_with_documents();
  change(R"({"op":"replace","path":"/gamma/gammaTab_R/3","value":12345})");
  EXPECT_EQ(as_ints(display().connectors[0].gamma.red), stored_table("gammaTab_R"));
  EXPECT_EQ(display().connectors[0].gamma.red.at(1023),
            static_cast<uint16_t>(stored_table("gammaTab_R").at(1023)));
  EXPECT_EQ(timeline(), "unset");
  EXPECT_TRUE(board().calls().empty()) << "no redraw";
}

TEST_F(Update, WhatFailsIsNeitherStoredNorShown) {
  start_with_documents();
  const std::string before = board().read(kPqDocument);
  const uint64_t commits = display().commits;
  for (const char* operation :
       {R"({"op":"test","path":"/csc/cscHue","value":-1})", R"({"op":"remove","path":"/csc/none"})",
        R"({"op":"replace","path":"/csc/cscHue"})", R"({"op":"move","from":0,"path":"/csc"})",
        R"({"op":"erase","path":"/csc"})"}) {
    change(operation);
  }
  EXPECT_EQ(board().read(kPqDocument), before);
  EXPECT_EQ(display().commits, commits);
  EXPECT_TRUE(board().calls().empty());
}

TEST_F(Update, APathWithoutASectionIsOnlyStored) {
  start_with_documents();
  const uint64_t writes = display().property_writes;
  change(R"({"op":"add","path":"/unknown","value":1})");
  EXPECT_EQ(section("unknown"), nullptr) << "the schema has no such member";
  EXPECT_EQ(display().property_writes, writes);
  EXPECT_TRUE(board().calls().empty());
}

TEST_F(Update, ControlsAreKeptInTheStoreEvenWhenTheDisplayRefusesThem) {
  board::Description description;
  description.faults.commit_errno = EBUSY;
  start_with_documents(description);
  change(R"({"op":"replace","path":"/csc/cscMode","value":"LOW_LATENCY_MODE"})");
  change(R"({"op":"replace","path":"/csc/cscContrast","value":0})");
  EXPECT_TRUE(logged_in_order({"Failed to commit pset ret=-16", "save bcsh data"}));
  EXPECT_EQ(kept_in_store("contrast").substr(0, 1), "0");
}

TEST_F(Update, AipqChangesTouchTheDocumentAndOneCounter) {
  start_with_documents();
  change_aipq(R"({"op":"replace","path":"/dci/4/dciEnable","value":0})");
  const auto scene = client().query_aipq("/dci");
  EXPECT_EQ(
      cJSON_GetNumberValue(cJSON_GetObjectItem(cJSON_GetArrayItem(scene.value, 4), "dciEnable")),
      0);
  EXPECT_EQ(board().property("vendor.tvinput.qxpq.update_aisd_dci_tab"), "1");
  const std::string before = board().read(kAipqDocument);
  change_aipq(R"({"op":"test","path":"/acm/dci","value":0})");
  EXPECT_EQ(board().read(kAipqDocument), before);
  EXPECT_EQ(board().property("vendor.tvinput.qxpq.update_aisd_acm_tab"), "1");
  EXPECT_EQ(board().property("vendor.tvinput.qxpq.update_aisd_dci_tab"), "1");
  change_aipq(R"({"op":"remove","path":""})");
  EXPECT_EQ(board().read(kAipqDocument), before) << "nothing is not a document";
}

TEST_F(Update, WithoutAnAipqDocumentCountsButCreatesNone) {
  start_with_documents();
  std::filesystem::remove(board().file(kAipqDocument));
  change_aipq(R"({"op":"add","path":"/acm","value":1})");
  EXPECT_FALSE(std::filesystem::exists(board().file(kAipqDocument)));
  EXPECT_EQ(board().property("vendor.tvinput.qxpq.update_aisd_acm_tab"), "1");
}

}  // namespace
}  // namespace scenario
