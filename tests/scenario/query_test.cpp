// Queries of both documents, as a tool sees them.
#include <baseparameter_api.h>

#include <algorithm>
#include <cstring>

#include "scenario/daemon_test.h"

namespace scenario {
namespace {

class Query : public DaemonTest {
 protected:
  // The board's own record from its store.
  template <typename Record = pq_tuning_info>
  Record stored_record(const char* file = "pq_tuning_info") {
    const std::string bytes = board().read(std::string("/board/baseparameter/") + file);
    Record record{};
    EXPECT_EQ(bytes.size(), sizeof(record));
    std::memcpy(&record, bytes.data(), std::min(bytes.size(), sizeof(record)));
    return record;
  }
};

template <typename Table>
std::vector<int> numbers(const Table& stored) {
  return {std::begin(stored), std::end(stored)};
}

TEST_F(Query, AnswersWithTheTablesOfTheStore) {
  start_with_documents("tv");
  const pq_tuning_info record = stored_record();
  const auto gamma = client().query_pq("/gamma");
  EXPECT_EQ(table(gamma.value, "gammaTab_R"), numbers(record.gamma_tab_r));
  EXPECT_EQ(table(gamma.value, "gammaTab_G"), numbers(record.gamma_tab_g));
  EXPECT_EQ(table(gamma.value, "gammaTab_B"), numbers(record.gamma_tab_b));
  const auto dci = client().query_pq("/dci");
  EXPECT_EQ(table(dci.value, "dciWgtCoef_mid"), numbers(record.dci_wgt_coef_mid));
  EXPECT_EQ(table(dci.value, "dciWeight_high"), numbers(record.dci_weight_high));
}

TEST_F(Query, AcmTablesOfAVersionTwoStoreAreConverted) {
  start_with_documents("tv");
  const pq_tuning_info record = stored_record();
  const auto acm = client().query_pq("/acm");

  const auto delta_y = table(acm.value, "acmTableDeltaYbyH");
  const auto delta_h = table(acm.value, "acmTableDeltaHbyH");
  const auto gain_y = table(acm.value, "acmTableGainYbyY");
  const auto gain_s = table(acm.value, "acmTableGainSbyS");
  ASSERT_EQ(delta_y.size(), 65U);
  ASSERT_EQ(gain_y.size(), 585U);
  ASSERT_EQ(gain_s.size(), 845U);
  for (size_t hue = 0; hue < 65; ++hue) {
    EXPECT_EQ(delta_y[hue], std::clamp(2 * record.acm_table_delta_y_by_h[hue] - 256, -255, 255));
    EXPECT_EQ(delta_h[hue], std::clamp(record.acm_table_delta_h_by_h[hue] - 64, -63, 63));
    for (size_t i = 0; i < 9; ++i) {
      EXPECT_EQ(gain_y[hue * 9 + i], std::clamp<int>(record.acm_table_gain_y_by_y[i], 0, 127));
    }
    for (size_t i = 0; i < 13; ++i) {
      EXPECT_EQ(gain_s[hue * 13 + i], std::clamp<int>(record.acm_table_gain_s_by_s[i], 0, 127));
    }
  }
}

TEST_F(Query, AcmTablesOfALaterStoreAreTakenAsTheyAre) {
  start_with_documents("display");
  const pq_tuning_info record = stored_record();
  const auto acm = client().query_pq("/acm");
  EXPECT_EQ(table(acm.value, "acmTableDeltaYbyH"), numbers(record.acm_table_delta_y_by_h));
  EXPECT_EQ(table(acm.value, "acmTableGainHbyY"), numbers(record.acm_table_gain_h_by_y));
  EXPECT_EQ(table(acm.value, "acmTableGainSbyS"), numbers(record.acm_table_gain_s_by_s));
}

TEST_F(Query, OfASharpMemberShowsTheWholeSectionWithDistinctValues) {
  start_with_documents();
  const auto sharp = client().query_pq("/sharp/sharpGainCtrlPos0");
  EXPECT_EQ(cJSON_GetArraySize(sharp.value), 61);
  const auto record = stored_record<pq_sharp_info>("pq_sharp_info");
  const auto value = [&](const char* name) {
    return static_cast<unsigned>(cJSON_GetNumberValue(cJSON_GetObjectItem(sharp.value, name)));
  };
  EXPECT_EQ(value("sharpCoringCtrlRatio3"), record.coring_ctrl_ratio[3]);
  EXPECT_EQ(value("sharpCoringCtrlZero0"), record.coring_ctrl_zero[0]);
  EXPECT_EQ(value("sharpCoringCtrlThrd2"), record.coring_ctrl_thrd[2]);
  EXPECT_EQ(value("sharpLimitCtrlPos13"), record.limit_ctrl_pos1[3]);
  EXPECT_EQ(value("sharpLimitCtrlBndPos1"), record.limit_ctrl_bnd_pos[1]);
  EXPECT_EQ(value("sharpLimitCtrlRatio3"), record.limit_ctrl_ratio[3]);
}

TEST_F(Query, CarriesTheBoardsPlatformNumber) {
  for (const auto& [platform, number] : std::vector<std::pair<std::string, int>>{
           {"qxt100", 0}, {"qxt200", 1}, {"qxt300", 2}, {"qxt2000", 0}, {"other", 0}}) {
    board::Description description;
    description.platform = platform;
    start_with_documents(description);
    EXPECT_EQ(client().query_pq("/csc").platform, number) << platform;
    EXPECT_EQ(client().query_aipq("/dci").platform, number) << platform;
    board().stop();
  }
}

// The document is chosen so that the whole reply fits here.
TEST_F(Query, ReplyIsExactToTheByte) {
  power_on();
  put_documents("tv");
  board().write(kPqDocument,
                R"({"pq_tuning_param":{"csc":{"name":"n","cscEnable":1,"cscHue":300,"x":2}}})");
  start_daemon();
  auto connection = connect();
  send(connection, document_packet(1, R"([{"path":"/csc","extra":[1]}])"));

  std::string reply = receive(connection, 24);
  ASSERT_GE(reply.size(), 24U);
  uint32_t length = 0;
  std::memcpy(&length, reply.data() + 20, sizeof length);
  const size_t size = 24 + length + 4;
  if (reply.size() < size) reply += receive(connection, size - reply.size());
  ASSERT_EQ(reply.size(), size);
  std::string start = header(0, length);
  start[8] = start[12] = 1;
  start.replace(16, 4, start, 20, 4);
  start +=
      "[{\n\t\"path\":\t\"/csc\",\n\t\"extra\":\t[1],\n\t\"value\":\t{\n\t\t\"name\":\t\"n\",\n"
      "\t\t\"cscEnable\":\t1,\n\t\t\"cscMode\":\t\"\",\n\t\t\"cscBrightness\":\t0,\n"
      "\t\t\"cscHue\":\t300,\n\t\t\"cscContrast\":\t0,\n";
  ASSERT_EQ(reply.substr(0, start.size()), start);
  const std::string end = ":\t0\n\t}\n}" + std::string(5, '\0');
  EXPECT_EQ(reply.substr(reply.size() - end.size()), end);
}

TEST_F(Query, AipqTablesAreAnsweredWholeAndOtherPathsWithTheRequest) {
  start_with_documents();
  EXPECT_EQ(cJSON_GetArraySize(client().query_aipq("/acm/3/lumGain").value), 12);
  EXPECT_EQ(cJSON_GetArraySize(client().query_aipq("/dci").value), 12);
  EXPECT_EQ(client().query_aipq("/nothing").value, nullptr);
}

TEST_F(Query, OfAnUnknownSectionGetsNoAnswerAndTheNextOneDoes) {
  start_with_documents();
  auto connection = connect();
  send(connection, document_packet(1, R"([{"path":"/unknown"}])"));
  EXPECT_EQ(receive(connection, 1, std::chrono::milliseconds(500)), "");
  EXPECT_TRUE(serves());
}

}  // namespace
}  // namespace scenario
