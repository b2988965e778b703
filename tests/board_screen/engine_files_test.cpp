// The engine's input and output files. tests/scenario checks its tables on the screen.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "engine/cube_file.h"
#include "engine/parameters.h"
#include "support/temporary_folder.h"

using board::Lut3d;
using board::engine::Parameters;
using board::engine::read_parameters;

namespace {

TEST(EngineParameters, ComeFromTheDocumentsMembersWithinTheirRanges) {
  const TemporaryFolder folder;
  folder.write("pq.json", R"({"pq_tuning_param": {
    "dci": {"dciEnable": 1, "dciWgtCoef_mid": [5000, "x", 7], "dciWeight_high": [9]},
    "acm": {"acmEnable": 1, "acmTableDeltaHbyH": [-400], "acmTableGainHbyS": [1, 2], "lumGain": 11},
    "sharp": {"sharpEnable": 0, "sharpShootCtrlOver": 21}}})");
  const Parameters read = read_parameters(folder.path() / "pq.json");
  EXPECT_TRUE(read.dci.enable && read.acm.enable && !read.sharp.enable);
  EXPECT_EQ(read.dci.mid.points[0], 1023) << "beyond the range";
  EXPECT_EQ(read.dci.mid.points[1], 0) << "no number";
  EXPECT_EQ(read.dci.high.weights[0], 9);
  EXPECT_EQ(read.acm.hue.delta[0], -63) << "beyond the range";
  EXPECT_EQ(read.acm.hue.gain_by_saturation[1], 2);
  EXPECT_EQ(read.acm.luma.master_gain, 11);
  EXPECT_EQ(read.sharp.over, 21);
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
