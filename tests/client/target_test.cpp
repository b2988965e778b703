#include "pqclient/target.h"

#include <gtest/gtest.h>

#include <string>

#include "pqclient/error.h"

namespace pqclient {
namespace {

TEST(Target, BecomesAPointerIntoTheDocument) {
  EXPECT_EQ(parse_target("csc").pointer(), "/csc");
  EXPECT_EQ(parse_target("/sharp/AISDEnable").pointer(), "/sharp/AISDEnable");
  EXPECT_EQ(parse_target("acm/acmTableGainYbyS/844").pointer(), "/acm/acmTableGainYbyS/844");
  for (const char* path : {"ai/dci/nature-sky/dciEnable", "/ai/dci/4/dciEnable"}) {
    const Target target = parse_target(path);
    EXPECT_EQ(target.document, Document::kAipq);
    EXPECT_EQ(target.pointer(), "/dci/4/dciEnable");
    EXPECT_EQ(target.text(), "ai/dci/nature-sky/dciEnable");
  }
}

struct Wrong {
  const char* path;
  const char* help;  // must be part of the error
};

TEST(Target, ThatDoesNotExistIsExplained) {
  for (const auto& [path, help] : {
           Wrong{"", "csc, dci, acm, gamma, sharp"},
           Wrong{"brightness", "nearest: csc/cscBrightness;"},
           Wrong{"ai/csc", "use ai/dci or ai/acm"},
           Wrong{"ai/dci/sky", "nearest: nature-sky, word-sky;"},
           Wrong{"csC/name", "no section \"csC\""},
           Wrong{"csc/bright", "nearest: cscBrightness"},
           Wrong{"gamma/gammatab_r", "nearest: gammaTab_R"},
           Wrong{"dci/dciWegiht_mid", "nearest: dciWeight_mid"},
           Wrong{"csc/zzzzzzzz", "see pqctl list csc"},
           Wrong{"dci/dciWeight_low/32", "0 to 31"},
           Wrong{"dci/dciWgtCoef_low/-1", "0 to 32"},
           Wrong{"gamma/gammaTab_B/1x", "0 to 1023"},
           Wrong{"csc/cscHue/0", "single value"},
       }) {
    try {
      parse_target(path);
      ADD_FAILURE() << "taken: " << path;
    } catch (const Error& error) {
      EXPECT_EQ(error.kind(), ErrorKind::kInput);
      EXPECT_NE(std::string(error.what()).find(help), std::string::npos) << error.what();
    }
  }
}

}  // namespace
}  // namespace pqclient
