#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numeric>
#include <sstream>
#include <string>

#include "engine/cube_file.h"
#include "engine/model.h"
#include "neutral_parameters.h"
#include "temporary_folder.h"

using board::Lut3d;
using board::Rgb16;
using board::engine::compute_lut;
using board::engine::Parameters;
using board::engine::read_parameters;

namespace {

constexpr size_t kTop = Lut3d::kEdge - 1;
constexpr size_t kMid = kTop / 2;

struct Point {
  size_t red, green, blue;
};
constexpr Point kRed = {kMid + 4, 4, 4};  // full enough to have a hue, with room to all sides
constexpr Point kCyan = {4, kMid + 4, kMid + 4};

Rgb16 at(const Lut3d& lut, Point point) {
  return lut.points[Lut3d::index(point.red, point.green, point.blue)];
}
Rgb16 grey(const Lut3d& lut, size_t level) {
  return at(lut, {level, level, level});
}
Rgb16 unchanged(Point point) {
  return at(Lut3d::identity(), point);
}

board::YCbCr ycbcr(Rgb16 colour) {
  return to_ycbcr(to_unit(colour));
}
double saturation(Rgb16 colour) {
  return std::hypot(ycbcr(colour).cb, ycbcr(colour).cr);
}
double hue(Rgb16 colour) {
  return std::atan2(ycbcr(colour).cr, ycbcr(colour).cb);
}

// The hue point of red, counted as the tables count: from blue towards red.
size_t red_hue_point() {
  return static_cast<size_t>(std::lround(hue(unchanged(kRed)) / (2 * M_PI) * 64));
}

TEST(EngineModel, ChangesNothingWithStagesOffOrNeutral) {
  EXPECT_EQ(compute_lut(Parameters{}).points, Lut3d::identity().points);
  EXPECT_EQ(compute_lut(neutral_parameters()).points, Lut3d::identity().points);

  Parameters no_weights = neutral_parameters();
  no_weights.dci = {};
  no_weights.dci.enable = true;
  EXPECT_EQ(compute_lut(no_weights).points, Lut3d::identity().points)
      << "curves without weight are not asked for";
}

TEST(EngineModel, DciBendsLumaOnlyWhereItsWeightsAre) {
  Parameters parameters = neutral_parameters();
  auto& low = parameters.dci.low;
  for (int& point : low.points)
    point = std::min(point + 100, 1023);
  for (size_t bin = 16; bin < low.weights.size(); ++bin)
    low.weights[bin] = 0;
  const Lut3d lut = compute_lut(parameters);

  EXPECT_GT(grey(lut, 4).red, unchanged({4, 4, 4}).red + 500);
  EXPECT_NEAR(grey(lut, 12).red, unchanged({12, 12, 12}).red, 1);
  const Rgb16 lifted = grey(lut, 4);
  EXPECT_NEAR(lifted.red, lifted.blue, 1) << "a grey stays grey";
  EXPECT_NEAR(saturation(at(lut, kRed)), saturation(unchanged(kRed)), 1e-4);

  parameters.dci.enable = false;
  EXPECT_EQ(compute_lut(parameters).points, Lut3d::identity().points);
}

TEST(EngineModel, AcmMovesTheHueThatItsTableNames) {
  Parameters more_saturation = neutral_parameters();
  more_saturation.acm.saturation.delta[red_hue_point()] = 128;
  Parameters brighter = neutral_parameters();
  brighter.acm.luma.delta[red_hue_point()] = 64;
  Parameters turned = neutral_parameters();
  turned.acm.hue.delta[red_hue_point()] = 32;

  const Rgb16 red = unchanged(kRed);
  EXPECT_GT(saturation(at(compute_lut(more_saturation), kRed)), 1.1 * saturation(red));
  EXPECT_GT(ycbcr(at(compute_lut(brighter), kRed)).y, 1.1 * ycbcr(red).y);
  EXPECT_GT(hue(at(compute_lut(turned), kRed)), hue(red) + 0.1);
  for (const auto& parameters : {more_saturation, brighter, turned}) {
    const Lut3d lut = compute_lut(parameters);
    EXPECT_NEAR(at(lut, kCyan).red, unchanged(kCyan).red, 1) << "the opposite hue stays";
    EXPECT_NEAR(grey(lut, kMid).red, unchanged({kMid, kMid, kMid}).red, 1) << "grey has no hue";
  }
}

TEST(EngineModel, AcmDeltasCountAsMuchAsTheirGainsSay) {
  const auto saturation_of_red = [](const Parameters& parameters) {
    return saturation(at(compute_lut(parameters), kRed)) / saturation(unchanged(kRed));
  };
  Parameters full = neutral_parameters();
  full.acm.saturation.delta.fill(-128);
  Parameters half = full;
  half.acm.saturation.gain_by_luma.fill(64);
  Parameters none = full;
  none.acm.saturation.master_gain = 0;
  Parameters dark_only = full;  // red's luma lies above the rows' first two points
  for (size_t i = 0; i < dark_only.acm.saturation.gain_by_luma.size(); ++i) {
    if (i % 9 > 1) dark_only.acm.saturation.gain_by_luma[i] = 0;
  }
  EXPECT_NEAR(saturation_of_red(full), 0.5, 0.001);
  EXPECT_NEAR(saturation_of_red(half), 0.75, 0.01);
  EXPECT_NEAR(saturation_of_red(none), 1, 0.001);
  EXPECT_NEAR(saturation_of_red(dark_only), 1, 0.001);
}

TEST(EngineModel, SharpnessSteepensTheMidTones) {
  Parameters parameters = neutral_parameters();
  parameters.sharp.peaking_gain = 1023;
  Lut3d lut = compute_lut(parameters);
  EXPECT_GT(grey(lut, kMid + 2).red, unchanged({kMid + 2, 0, 0}).red + 500);
  EXPECT_LT(grey(lut, kMid - 2).red, unchanged({kMid - 2, 0, 0}).red - 500);
  for (const size_t fixed : {size_t{0}, kMid, kTop}) {
    EXPECT_NEAR(grey(lut, fixed).red, unchanged({fixed, 0, 0}).red, 1);
  }

  parameters.sharp.shoot_control = true;
  parameters.sharp.under = 127;  // and no overshoot
  lut = compute_lut(parameters);
  EXPECT_NEAR(grey(lut, kMid + 2).red, unchanged({kMid + 2, 0, 0}).red, 1);
  EXPECT_LT(grey(lut, kMid - 2).red, unchanged({kMid - 2, 0, 0}).red - 500);
}

std::string counting_from(int first, int count) {
  std::string list = "[";
  for (int i = 0; i < count; ++i)
    list += (i > 0 ? "," : "") + std::to_string(first + i);
  return list + "]";
}

TEST(EngineParameters, ComeFromTheDocumentsMembers) {
  TemporaryFolder folder;
  folder.write("pq.json", R"({"pq_tuning_param": {
    "dci": {"dciEnable": 1, "dciWgtCoef_low": )" +
                              counting_from(1, 33) + R"(,
            "dciWeight_high": )" +
                              counting_from(40, 32) + R"(, "dciWgtCoef_mid": [5000, "x", 7]},
    "acm": {"acmEnable": 1, "acmTableDeltaYbyH": )" +
                              counting_from(-70, 65) + R"(,
            "acmTableDeltaHbyH": [-400], "acmTableGainHbyS": )" +
                              counting_from(0, 845) + R"(,
            "lumGain": 11, "hueGain": 12, "satGain": 5000},
    "sharp": {"sharpEnable": 0, "sharpPeakingGain": 300, "sharpEnableShootCtrl": 1,
              "sharpShootCtrlOver": 21, "sharpShootCtrlUnder": 22}}})");
  const Parameters read = read_parameters(folder.path() / "pq.json");
  EXPECT_TRUE(read.dci.enable);
  EXPECT_EQ(read.dci.low.points[32], 33);
  EXPECT_EQ(read.dci.high.weights[31], 71);
  EXPECT_EQ(read.dci.mid.points[0], 1023) << "beyond the range";
  EXPECT_EQ(read.dci.mid.points[1], 0) << "no number";
  EXPECT_EQ(read.dci.mid.points[2], 7);
  EXPECT_EQ(read.acm.luma.delta[64], -6);
  EXPECT_EQ(read.acm.hue.delta[0], -63) << "beyond the range";
  EXPECT_EQ(read.acm.hue.gain_by_saturation[100], 100);
  EXPECT_EQ(read.acm.luma.master_gain, 11);
  EXPECT_EQ(read.acm.hue.master_gain, 12);
  EXPECT_EQ(read.acm.saturation.master_gain, 1023) << "beyond the range";
  EXPECT_FALSE(read.sharp.enable);
  EXPECT_EQ(read.sharp.over, 21);
  EXPECT_EQ(read.sharp.under, 22);
}

TEST(EngineParameters, AreRefusedWithoutADocument) {
  TemporaryFolder folder;
  EXPECT_THROW(read_parameters(folder.path() / "missing.json"), std::runtime_error);
  for (const char* text : {"", "{", "[]", "{}", R"({"pq_tuning_param": 3})"}) {
    folder.write("pq.json", text);
    EXPECT_THROW(read_parameters(folder.path() / "pq.json"), std::runtime_error) << text;
  }
  folder.write("pq.json", R"({"pq_tuning_param": {"dci": 3, "acm": {"acmTableDeltaYbyH": {}}}})");
  EXPECT_FALSE(read_parameters(folder.path() / "pq.json").dci.enable) << "damaged, but readable";
}

TEST(CubeFile, HasRedRunningFastest) {
  Lut3d lut = Lut3d::identity();
  lut.points[Lut3d::index(1, 0, 0)] = {65535, 0, 32768};
  std::istringstream file(board::engine::to_cube_text(lut));
  std::string line;
  std::getline(file, line);
  EXPECT_EQ(line.substr(0, 7), "TITLE \"");
  std::getline(file, line);
  EXPECT_EQ(line, "LUT_3D_SIZE 17");
  std::vector<std::string> rows;
  while (std::getline(file, line))
    rows.push_back(line);
  ASSERT_EQ(rows.size(), 4913U);
  EXPECT_EQ(rows[0], "0.000000 0.000000 0.000000");
  EXPECT_EQ(rows[1], "1.000000 0.000000 0.500008");
  EXPECT_EQ(rows[17], "0.000000 0.062501 0.000000");
  EXPECT_EQ(rows[289], "0.000000 0.000000 0.062501");
  EXPECT_EQ(rows.back(), "1.000000 1.000000 1.000000");
}

}  // namespace
