#include "pqclient/target.h"

#include <gtest/gtest.h>

#include <ostream>

#include "pqclient/error.h"

namespace pqclient {
namespace {

TEST(Target, BecomesAPointerIntoTheDocument) {
  EXPECT_EQ(parse_target("csc").pointer(), "/csc");
  EXPECT_EQ(parse_target("/sharp/AISDEnable").pointer(), "/sharp/AISDEnable");
  EXPECT_EQ(parse_target("acm/acmTableGainYbyS/844").pointer(), "/acm/acmTableGainYbyS/844");
}

struct Wrong {
  const char* name;
  const char* path;
  const char* help;  // what the error must say
};

void PrintTo(const Wrong& example, std::ostream* out) {
  *out << example.name;
}

class WrongTarget : public testing::TestWithParam<Wrong> {};

TEST_P(WrongTarget, IsExplained) {
  try {
    parse_target(GetParam().path);
    FAIL() << "taken";
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::kInput);
    EXPECT_NE(std::string(error.what()).find(GetParam().help), std::string::npos) << error.what();
  }
}

INSTANTIATE_TEST_SUITE_P(
    , WrongTarget,
    testing::Values(Wrong{"empty", "", "csc, dci, acm, gamma, sharp"},
                    Wrong{"section", "csC/name", "no section \"csC\""},
                    Wrong{"part_of_a_name", "csc/bright", "nearest: cscBrightness"},
                    Wrong{"case", "gamma/gammatab_r", "nearest: gammaTab_R"},
                    Wrong{"typing_slip", "dci/dciWegiht_mid", "nearest: dciWeight_mid"},
                    Wrong{"nothing_like_it", "csc/zzzzzzzz", "see pqctl get csc"},
                    Wrong{"index_behind_the_end", "dci/dciWeight_low/32", "0 to 31"},
                    Wrong{"index_below_zero", "dci/dciWgtCoef_low/-1", "0 to 32"},
                    Wrong{"index_not_a_number", "gamma/gammaTab_B/1x", "0 to 1023"},
                    Wrong{"index_of_a_single_value", "csc/cscHue/0", "single value"}),
    [](const auto& instance) { return instance.param.name; });

}  // namespace
}  // namespace pqclient
