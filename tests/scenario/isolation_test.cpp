// Both ways to give the daemon a board's paths: all that needs them, from end to end.
#include <algorithm>

#include "scenario/screen_test.h"

namespace scenario {
namespace {

using board::Isolation;

class Isolations : public ScreenTest, public testing::WithParamInterface<Isolation> {};

TEST_P(Isolations, ShowAChangeAPatternAndADump) {
#ifdef __SANITIZE_THREAD__
  // Its programs need addresses that proot has taken.
  if (GetParam() == Isolation::kProot) GTEST_SKIP() << "no thread sanitizer under proot";
#endif
  start_with_documents("tv", {.isolation = GetParam()});
  change(R"({"op":"replace","path":"/gamma/gammaTab_R/0","value":777})");
  EXPECT_EQ(table(client().query_pq("/gamma").value, "gammaTab_R").at(0), 777);
  EXPECT_TRUE(soon([this] {
    const auto gamma = on_screen().gamma.red;
    return !gamma.empty() && gamma[0] == 777;
  }));
  change(R"({"op":"replace","path":"/dci/dciEnable","value":1})");
  EXPECT_TRUE(soon([this] { return on_screen().lut.has_value(); }));
  EXPECT_TRUE(std::filesystem::exists(board().file("/data/lut_0.cube")));

  command(3, {255, 0, 128});
  EXPECT_TRUE(soon([this] { return on_screen().pattern.has_value(); }));
  const auto dump = decode(client().request_dump(pqclient::DumpSide::kInput));
  EXPECT_EQ(dump.rgb.size(), 1920U * 1080 * 3);
  EXPECT_EQ(dump.rgb[0], 255);
  command(4, {0x81});
  EXPECT_TRUE(soon([this] { return !on_screen().pattern.has_value(); }));
  EXPECT_EQ(board().stop(), 0);
}

INSTANTIATE_TEST_SUITE_P(, Isolations, testing::Values(Isolation::kNamespace, Isolation::kProot),
                         [](const auto& isolation) {
                           return isolation.param == Isolation::kNamespace ? "InAPrivateRoot"
                                                                           : "UnderProot";
                         });

}  // namespace
}  // namespace scenario
