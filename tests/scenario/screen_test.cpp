// The daemon's updates, as seen on the simulated screen.
#include "scenario/screen_test.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>

namespace scenario {
namespace {

class Screen : public ScreenTest {};

std::string list_of(int count, int first, int step = 0) {
  std::string list = "[" + std::to_string(first);
  for (int i = 1; i < count; ++i)
    list += "," + std::to_string(first + i * step);
  return list + "]";
}

// In low-latency mode the redraw comes before the controls are set. They are visible only because
// the display device applies them at once.
TEST_F(Screen, ControlsOfLowLatencyModeMoveThePictureAsTheyAreNamed) {
  start_with_documents();
  change(R"({"op":"replace","path":"/csc/cscMode","value":"LOW_LATENCY_MODE"})");
  const Means neutral = settled_means();
  change(R"({"op":"replace","path":"/csc/cscBrightness","value":360})");
  const Means bright = settled_means();
  EXPECT_GT(bright.luma(), neutral.luma() + 0.05);
  change(R"({"op":"replace","path":"/csc/cscSaturation","value":400})");
  EXPECT_GT(settled_means().chroma, bright.chroma * 1.1);
}

TEST_F(Screen, AGammaTableIsSeenWithoutARedraw) {
  start_with_documents();
  change(R"({"op":"replace","path":"/gamma/gammaTab_G/0","value":0})");
  const Means before = settled_means();
  change(R"({"op":"replace","path":"/gamma/gammaTab_G","value":)" + list_of(1024, 0, 32) + "}");
  const Means after = settled_means();
  EXPECT_NEAR(after.green, before.green / 2, 0.05);
  EXPECT_EQ(after.red, before.red);
  EXPECT_TRUE(board().calls().empty());
}

TEST_F(Screen, ADciOrAcmChangeComputesATableThatIsSeen) {
  start_with_documents();
  change(R"({"op":"replace","path":"/dci/dciEnable","value":1})");
  EXPECT_TRUE(soon([this] { return on_screen().lut.has_value(); }));
  const Means before = means();
  change(R"({"op":"replace","path":"/dci/dciWgtCoef_mid/16","value":1000})");
  EXPECT_TRUE(soon([&] { return means().luma() > before.luma() + 0.005; }));
  change(R"({"op":"replace","path":"/acm/satGain","value":0})");
  const double plain = means().chroma;
  change(R"({"op":"replace","path":"/acm/acmTableDeltaSbyH","value":)" + list_of(65, 200) + "}");
  change(R"({"op":"replace","path":"/acm/satGain","value":1023})");
  EXPECT_TRUE(soon([&] { return means().chroma > plain * 1.1; }));
  std::istringstream cube(board().read("/data/lut_0.cube"));
  int rows = 0;
  for (std::string line; std::getline(cube, line);)
    rows += line.starts_with("0.") || line.starts_with("1.") ? 1 : 0;
  EXPECT_EQ(rows, 17 * 17 * 17);
}

TEST_F(Screen, APatternCoversItUntilPatternModeIsLeft) {
  start_with_documents();
  const Picture before = shown();
  command(3, {255, 0, 128});
  EXPECT_TRUE(soon([this] {
    const Picture picture = shown();
    return std::ranges::all_of(picture.pixels, [](const board::Rgb16& pixel) {
      return pixel == board::Rgb16{65535, 0, 128 * 257};
    });
  }));
  command(4, {0x81});
  EXPECT_TRUE(soon([&] { return shown().pixels == before.pixels; }));
}

TEST_F(Screen, IsSavedByTheBoardsOwnCommand) {
  start_with_documents();
  const auto file = board().state() / "screen.png";
  const auto qxboard = [&](const std::string& arguments) {
    return std::system((QXBOARD " " + arguments + " --state " + board().state().string()).c_str());
  };
  ASSERT_TRUE(soon([&] { return qxboard("screenshot " + file.string() + " 2>&1") == 0; }));
  EXPECT_GT(std::filesystem::file_size(file), 100'000U) << "a picture of 1920x1080 as PNG";
  EXPECT_EQ(qxboard("drm >" + file.string()), 0);
  EXPECT_NE(qxboard("screenshot /no/such/folder/x.png 2>" + file.string()), 0);
}

}  // namespace
}  // namespace scenario
