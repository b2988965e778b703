// Documents that are missing or damaged: the replies, the stored state, and the log lines.
#include <filesystem>

#include "scenario/daemon_test.h"

namespace scenario {
namespace {

class DamagedDocument : public DaemonTest {
 protected:
  // The number of error lines with this text in the log.
  int errors(const std::string& text) {
    const std::string log = board().log();
    int count = 0;
    for (size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1)) {
      const size_t start = log.rfind('\n', at) + 1;
      if (log.substr(start, at - start).find(" E ") != std::string::npos) ++count;
    }
    return count;
  }
  int brightness() {
    const auto answer = client().query_pq("/csc");
    return static_cast<int>(
        cJSON_GetNumberValue(cJSON_GetObjectItem(answer.value, "cscBrightness")));
  }
};

constexpr char kNotJson[] = " is damaged: it is not JSON";
constexpr char kChange[] = R"({"op":"replace","path":"/csc/cscHue","value":1})";
constexpr char kAipqChange[] = R"({"op":"replace","path":"/dci/0/dciEnable","value":1})";

TEST_F(DamagedDocument, IsLoggedAtEachRequest) {
  start_with_documents();
  board().write(kPqDocument, "{\"pq_tun");
  EXPECT_EQ(brightness(), 0);
  EXPECT_EQ(errors(std::string(kPqDocument) + kNotJson), 1);
  change(kChange);  // ends with a query, so the update is complete
  EXPECT_GE(errors(std::string(kPqDocument) + kNotJson), 2);
  EXPECT_EQ(board().read(kPqDocument), "{\"pq_tun");

  board().write(kAipqDocument, "");
  EXPECT_EQ(client().query_aipq("/dci").value, nullptr);
  EXPECT_EQ(errors(std::string(kAipqDocument) + kNotJson), 1);
  change_aipq(kAipqChange);
  EXPECT_GE(errors(std::string(kAipqDocument) + kNotJson), 2);
  EXPECT_EQ(board().read(kAipqDocument), "");
}

TEST_F(DamagedDocument, IsOneWithoutParametersToo) {
  start_with_documents();
  board().write(kPqDocument, "{\"pq\":{}}");
  EXPECT_EQ(brightness(), 0);
  EXPECT_EQ(errors(std::string(kPqDocument) + " is damaged: it has no object pq_tuning_param"), 1);
}

TEST_F(DamagedDocument, IsOneOfMoreThanEightMebibytes) {
  start_with_documents();
  const std::string document = board().read(kPqDocument);
  board().write(kPqDocument, document + std::string(size_t{8} * 1024 * 1024, ' '));
  EXPECT_EQ(brightness(), 0);
  EXPECT_EQ(errors(std::string(kPqDocument) + " is damaged: it has more than 8388608 bytes"), 1);
}

TEST_F(DamagedDocument, IsKeptWhenPatternModeWritesZerosOverIt) {
  start_with_documents();
  const std::string cut = board().read(kPqDocument).substr(0, 20'000);
  board().write(kPqDocument, cut);
  EXPECT_EQ(command(4, {0x80}).size(), 72U);
  EXPECT_EQ(board().read(std::string(kPqDocument) + ".damaged"), cut);
  EXPECT_EQ(errors("pattern mode writes zeros over"), 1);
  EXPECT_EQ(errors(std::string(kPqDocument) + ".damaged"), 1);
  EXPECT_TRUE(cJSON_IsObject(client().query_pq("/csc").value));
  EXPECT_EQ(errors(kNotJson), 1) << "the zeros are a document";
}

TEST_F(DamagedDocument, ThatIsMissingIsLoggedAtEachRequest) {
  start_with_documents();
  std::filesystem::remove(board().file(kPqDocument));
  std::filesystem::remove(board().file(kAipqDocument));
  EXPECT_EQ(brightness(), 0);
  EXPECT_EQ(errors(std::string(kPqDocument) + " is missing"), 1);
  EXPECT_EQ(client().query_aipq("/dci").value, nullptr);
  EXPECT_EQ(errors(std::string(kAipqDocument) + " is missing"), 1);
  change_aipq(kAipqChange);
  EXPECT_FALSE(std::filesystem::exists(board().file(kAipqDocument)));
}

TEST_F(DamagedDocument, LetsTheOtherOneBeServed) {
  start_with_documents();
  board().write(kPqDocument, "{");
  EXPECT_TRUE(cJSON_IsArray(client().query_aipq("/DCI and dci").value));
}

// The AIPQ document stores names as sent, so a table's name may differ in case.
TEST_F(DamagedDocument, IsNoneWhoseTableHasANameOfAnotherCase) {
  start_with_documents();
  change_aipq(R"({"op":"replace","path":"/ACM","value":[7]})");
  EXPECT_TRUE(cJSON_IsArray(client().query_aipq("/acm").value));
}

}  // namespace
}  // namespace scenario
