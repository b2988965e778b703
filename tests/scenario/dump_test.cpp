// Dumps of a large picture in every format: they must arrive whole and show the screen's input and
// output.
#include "pqclient/picture_difference.h"
#include "scenario/screen_test.h"
#include "screen/test_picture.h"
#include "support/in_8_bits.h"

namespace scenario {
namespace {

#ifdef __SANITIZE_THREAD__
constexpr board::screen::Size kSize = {1280, 720};  // the daemon gives a dump 4.2 seconds
#else
constexpr board::screen::Size kSize = {3840, 2160};
#endif

struct Format {
  const char* name;
  double mean_distance;  // per channel, in codes: the cost of rounding and shared chroma
};

class LargeDump : public ScreenTest, public testing::WithParamInterface<Format> {
 protected:
  static void expect_picture(pqclient::DumpSide side, const Picture& expected) {
    const pqclient::Dump dump = client().request_dump(side);
    EXPECT_EQ(format_name(dump.format), GetParam().name);
    const auto difference = compare_pictures(in_8_bits(expected), decode(dump));
    for (const pqclient::ChannelDifference& channel : difference.channels) {
      EXPECT_LE(channel.mean_distance, GetParam().mean_distance);
      EXPECT_NEAR(channel.mean, 0, 0.2);
    }
  }
};

TEST_P(LargeDump, ArrivesWholeFromBothSides) {
  board::Description description;
  description.dump_width = kSize.width;
  description.dump_height = kSize.height;
  description.dump_format_in = description.dump_format_out = GetParam().name;
  start_with_documents(description);
  change(R"({"op":"replace","path":"/gamma/gammaTab_B/0","value":0})");
  const Picture input = board::screen::draw_test_picture(kSize);
  expect_picture(pqclient::DumpSide::kInput, input);
  ASSERT_FALSE(on_screen().gamma.blue.empty()) << "both sides would be alike";
  expect_picture(pqclient::DumpSide::kOutput, board::screen::Pipeline(on_screen()).apply(input));
}

INSTANTIATE_TEST_SUITE_P(, LargeDump,
                         testing::Values(Format{"rgba", 0}, Format{"bgr", 0}, Format{"nv12", 2},
                                         Format{"nv16", 1.5}, Format{"nv24", 0.7},
                                         Format{"nv15", 2}, Format{"rgb", 0}),
                         [](const auto& parameter) { return parameter.param.name; });

}  // namespace
}  // namespace scenario
