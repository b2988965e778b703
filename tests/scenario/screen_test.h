// Fixture of the tests that look at the simulated screen.
#ifndef TESTS_SCENARIO_SCREEN_TEST_H_
#define TESTS_SCENARIO_SCREEN_TEST_H_

#include <chrono>
#include <cmath>
#include <filesystem>
#include <functional>
#include <thread>

#include "colour/rgb.h"
#include "drm/display_state.h"
#include "scenario/daemon_test.h"
#include "screen/pipeline.h"
#include "screen/state_file.h"

namespace scenario {

using board::screen::Picture;

// Averages over a picture, full scale 1. Chroma is the distance from grey.
struct Means {
  double red = 0;
  double green = 0;
  double blue = 0;
  double chroma = 0;
  [[nodiscard]] double luma() const { return board::to_ycbcr({red, green, blue}).y; }
};

class ScreenTest : public DaemonTest {
 protected:
  // The display service starts together with the daemon, so this waits for its first picture.
  board::screen::ScreenState on_screen() {
    const auto file = board::screen::state_file(board().file("/board"));
    EXPECT_TRUE(soon([&] { return std::filesystem::exists(file); }));
    return board::screen::read_state(file);
  }

  // A screenshot, in a size that is quick to draw.
  Picture shown() {
    const auto state = on_screen();
    return board::screen::Pipeline(state).apply(board::screen::screen_input(state, {320, 180}));
  }

  Means means() {
    Means sum;
    const Picture picture = shown();
    const double unit = 1.0 / board::kFullScale / static_cast<double>(picture.pixels.size());
    for (const board::Rgb16& pixel : picture.pixels) {
      const board::Rgb colour{pixel.red * unit, pixel.green * unit, pixel.blue * unit};
      const board::YCbCr difference = board::to_ycbcr(colour);
      sum.red += colour.red;
      sum.green += colour.green;
      sum.blue += colour.blue;
      sum.chroma += std::hypot(difference.cb, difference.cr);
    }
    return sum;
  }

  // Waits until the screen shows the state of the display device.
  Means settled_means() {
    EXPECT_TRUE(soon([this] {
      const auto device = board::read_display_state(board().file("/board")).connectors.at(0);
      const auto state = on_screen();
      return state.gamma == device.gamma && state.controls == device.controls;
    }));
    return means();
  }

  // The display service works in parallel: waits some seconds for it.
  static bool soon(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
      if (std::chrono::steady_clock::now() > end) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
  }
};

}  // namespace scenario

#endif  // TESTS_SCENARIO_SCREEN_TEST_H_
