#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "screen/pipeline.h"

using board::Lut3d;
using board::Rgb16;
using board::screen::DisplayState;
using board::screen::Pipeline;

namespace {

constexpr uint16_t kTop = 65535;
constexpr Rgb16 kSkin = {52000, 40000, 33000};

board::YCbCr shown(const board::screen::PictureControls& controls, Rgb16 colour) {
  DisplayState state;
  state.controls = controls;
  return to_ycbcr(to_unit(Pipeline(state).apply(colour)));
}

board::screen::GammaTable same_for_all(const std::vector<uint16_t>& table) {
  return {table, table, table};
}

void expect_near(Rgb16 actual, Rgb16 expected, int tolerance) {
  EXPECT_NEAR(actual.red, expected.red, tolerance);
  EXPECT_NEAR(actual.green, expected.green, tolerance);
  EXPECT_NEAR(actual.blue, expected.blue, tolerance);
}

TEST(Pipeline, ControlsMoveThePictureAsTheyAreNamed) {
  const board::YCbCr before = to_ycbcr(to_unit(kSkin));
  const double chroma_before = std::hypot(before.cb, before.cr);

  const auto bright = shown({.brightness = 60}, kSkin);
  EXPECT_NEAR(bright.y, before.y + 0.1, 1e-3);
  EXPECT_NEAR(bright.cr, before.cr, 1e-3);

  const auto flat = shown({.contrast = 25}, kSkin);
  EXPECT_NEAR(flat.y, 0.5 + (before.y - 0.5) / 2, 1e-3);
  const auto grey = shown({.contrast = 0}, kSkin);
  EXPECT_NEAR(grey.y, 0.5, 1e-3);

  const auto vivid = shown({.saturation = 60}, kSkin);
  EXPECT_NEAR(vivid.y, before.y, 1e-3);
  EXPECT_NEAR(std::hypot(vivid.cb, vivid.cr), 1.2 * chroma_before, 1e-3);

  const auto turned = shown({.hue = 100}, kSkin);
  EXPECT_NEAR(std::atan2(turned.cr, turned.cb) - std::atan2(before.cr, before.cb), M_PI / 6, 1e-2);
  EXPECT_NEAR(std::hypot(turned.cb, turned.cr), chroma_before, 1e-3);
}

TEST(Pipeline, InterpolatesBetweenTablePoints) {
  DisplayState state;
  state.lut = Lut3d::identity();
  state.lut->points[Lut3d::index(0, 0, 0)] = {0, 0, 8000};
  const uint16_t half_a_cell = kTop / 32;
  expect_near(Pipeline(state).apply({0, 0, 0}), {0, 0, 8000}, 1);
  expect_near(Pipeline(state).apply({half_a_cell, 0, 0}), {half_a_cell, 0, 4000}, 2);
  expect_near(Pipeline(state).apply({kTop / 16 + 1, 0, 0}), {kTop / 16, 0, 0}, 2);

  state.gamma = same_for_all({1000, 3000, 2000});
  expect_near(Pipeline(state).apply({kTop / 4, kTop / 2, kTop}), {2000, 3000, 2000}, 2);
}

TEST(Pipeline, AppliesControlsThenTableThenGamma) {
  // Each stage maps to grey levels so that any other order ends elsewhere.
  DisplayState state;
  state.controls.contrast = 0;  // everything becomes mid-grey
  state.lut = Lut3d{};          // everything becomes black, but mid-grey red
  state.lut->points[Lut3d::index(8, 8, 8)] = {kTop, 0, 0};
  state.gamma = same_for_all({kTop, 0});  // inverted
  expect_near(Pipeline(state).apply(kSkin), {0, kTop, kTop}, 10);
}

}  // namespace
