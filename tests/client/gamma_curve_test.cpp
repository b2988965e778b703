// Gamma curves from formulas, control points and files, up to the board's table.
#include "pqclient/gamma_curve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "pqclient/error.h"

namespace pqclient {
namespace {

// Entries 0, 256, 512, 768 and 1023 of a table.
using Five = std::array<int, 5>;

Five five_of(const std::vector<std::uint16_t>& entries) {
  return {entries[0], entries[256], entries[512], entries[768], entries[1023]};
}

Five five_of(const GammaCurve& curve) {
  return five_of(quantize({curve, curve, curve}, false).entries[1]);
}

// The expected numbers come from the formulas, computed independently.
TEST(GammaCurve, ComesFromFormulasAndControlPoints) {
  EXPECT_EQ(five_of(power_curve(1)), (Five{0, 16400, 32800, 49199, 65535}));
  EXPECT_EQ(five_of(power_curve(2.2)), (Five{0, 3111, 14294, 34877, 65535}));
  EXPECT_EQ(five_of(srgb_curve()), (Five{0, 3341, 14057, 34318, 65535}));
  EXPECT_EQ(five_of(curve_through(parse_control_points("0:0, 1:1"))), five_of(power_curve(1)));
  const GammaCurve peak = curve_through({{0.25, 0.5}, {0.5, 1}, {0.75, 0.5}});
  EXPECT_NEAR(std::ranges::max(peak), 1, 1e-4);
  EXPECT_LE(std::ranges::max(peak), 1) << "no overshoot";
  EXPECT_EQ(peak.front(), 0.5);
  EXPECT_EQ(peak.back(), 0.5);
}

TEST(GammaCurve, IsClippedAndRaisedUnlessToldOtherwise) {
  const GammaCurve wild = curve_through({{0, -0.5}, {0.5, 1.5}, {0.75, 0.5}, {1, 0.9}});
  const GammaTables tame = quantize({wild, wild, wild}, false);
  EXPECT_TRUE(std::ranges::is_sorted(tame.entries[0]));
  EXPECT_EQ(tame.entries[0].front(), 0);
  EXPECT_EQ(tame.entries[0].back(), 65535);
  EXPECT_GT(tame.clipped, 0);
  EXPECT_GT(tame.raised, 0);
  const GammaTables kept = quantize({wild, wild, wild}, true);
  EXPECT_EQ(kept.entries[0].back(), 58982);
  EXPECT_EQ(kept.raised, 0);
}

std::string whole_table() {
  std::string text = "R,G,B\n";
  for (int i = 0; i < 1024; ++i)
    text += std::to_string(i) + ",0," + std::to_string(i * 64) + "\n";
  return text;
}

struct Csv {
  const char* name;
  std::string text;
  double red, blue;  // at the middle, as fractions of full scale
  std::optional<double> full_scale = std::nullopt;
};

TEST(GammaCsv, IsReadInEveryForm) {
  for (const auto& [name, text, red, blue, full_scale] : {
           Csv{"one column for all", "0\n0.5\n1\n", 0.5, 0.5},
           Csv{"three with heading and comment", "r;g;b # mine\r\n0;0;0\r\n1;1;0.5\r\n", 0.5, 0.25},
           Csv{"input in codes", "0 0 0 0\n128 0.5 0 0.25\n256 1 0 1", 0.5, 0.25},
           Csv{"16-bit codes", "0,0\n0.5,32768\n1,65535", 0.5, 0.5},
           Csv{"10-bit codes", "0\n1023", 0.5, 0.5, 1023.0},
           Csv{"a whole table", whole_table(), 511.5 / 65535, 511.5 * 64 / 65535},
       }) {
    const GammaCurves curves = parse_gamma_csv(text, full_scale);
    EXPECT_NEAR((curves[0][511] + curves[0][512]) / 2, red, 1e-3) << name;
    EXPECT_NEAR((curves[2][511] + curves[2][512]) / 2, blue, 1e-3) << name;
  }
}

TEST(GammaFile, SaysWhereItMakesNoSense) {
  for (const char* text : {"", "1\n", "a,b\nc,d\n", "0,0,0\n1,1\n", "0,0\n0,1\n", "1 2 3 4 5\n"}) {
    EXPECT_THROW(parse_gamma_csv(text, std::nullopt), Error) << text;
  }
  for (const char* text : {"0.5", "0:0", "0:0,0:1", "1:0,0:1", "0:a,1:1", "0:0,2:1"}) {
    EXPECT_THROW(curve_through(parse_control_points(text)), Error) << text;
  }
  EXPECT_THROW(power_curve(0), Error);
}

// Halves red, adds a quarter of blue to green; eight rows with red fastest.
constexpr const char* kCube3d =
    "# made by hand\nTITLE \"mix\"\nLUT_3D_SIZE 2\n"
    "0 0 0\n0.5 0 0\n0 1 0\n0.5 1 0\n0 0.25 1\n0.5 0.25 1\n0 1.25 1\n0.5 1.25 1\n";

TEST(CubeFile, AnswersBetweenItsPoints) {
  const Cube cube = parse_cube(kCube3d);
  EXPECT_EQ(cube.title, "mix");
  const LinearColour mixed = cube.apply({0.5, 0.2, 0.4});
  EXPECT_NEAR(mixed[0], 0.25, 1e-9);
  EXPECT_NEAR(mixed[1], 0.3, 1e-9);
  EXPECT_NEAR(mixed[2], 0.4, 1e-9);
  EXPECT_NEAR(gamma_of_cube(cube)[1][1023], 1.25, 1e-9);

  const Cube line = parse_cube("LUT_1D_SIZE 3\nDOMAIN_MAX 2 2 2\n0 0 0\n1 .5 .25\n1 1 1\n");
  EXPECT_EQ(line.apply({1, 1, 1}), (LinearColour{1, 0.5, 0.25}));
  EXPECT_EQ(line.apply({0.5, 3, -1}), (LinearColour{0.5, 1, 0}));
  const Cube range = parse_cube("LUT_1D_SIZE 2\nLUT_1D_INPUT_RANGE -1 3\n0 0 0\n1 1 1\n");
  EXPECT_EQ(range.apply({-1, 1, 3}), (LinearColour{0, 0.5, 1}));
  EXPECT_TRUE(is_cube(kCube3d));
  EXPECT_FALSE(is_cube("LUT_R,LUT_G,LUT_B\n0,0,0\n")) << "a heading of a .csv file";
}

TEST(CubeFile, NamesTheLineThatIsWrong) {
  for (const auto& [text, line] : {std::pair{"LUT_3D_SIZE 1\n", 1},
                                   {"LUT_3D_SIZE 300\n", 1},
                                   {"0 0 0\n", 1},
                                   {"", 0},
                                   {"LUT_1D_SIZE 2\n0 0 0\n0 x 0\n", 3},
                                   {"LUT_1D_SIZE 2\n0 0 0\n", 2},
                                   {"LUT_1D_SIZE 2\nLUT_1D_INPUT_RANGE 1\n", 2},
                                   {"LUT_1D_SIZE 2\n0 0 0\n1 1 1\n2 2 2\n", 4},
                                   {"LUT_1D_SIZE 2\nDOMAIN_MIN 0 1 0\n0 0 0\n1 1 1\n", 4}}) {
    try {
      parse_cube(text);
      ADD_FAILURE() << text;
    } catch (const Error& error) {
      EXPECT_NE(std::string(error.what()).find("line " + std::to_string(line) + " "),
                std::string::npos)
          << error.what();
    }
  }
}

}  // namespace
}  // namespace pqclient
