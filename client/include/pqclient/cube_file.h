// Look-up tables in .cube files (Adobe, version 1.0): a row of points for each
// channel or a cube of colours.
// No I/O here; any thread may call.
#ifndef PQCLIENT_CUBE_FILE_H_
#define PQCLIENT_CUBE_FILE_H_

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pqclient {

// Red, green, blue; 1 is full scale.
using LinearColour = std::array<double, 3>;

struct Cube {
  std::string title;
  int dimensions = 3;  // 3: size x size x size colours; 1: size points for each channel
  int size = 0;        // 2 to 256, of one dimension to 65536
  LinearColour domain_low = {0, 0, 0};
  LinearColour domain_high = {1, 1, 1};
  std::vector<LinearColour> points;  // red varies fastest, blue slowest

  // The table's output for a colour, linear between its points; a colour outside the domain counts
  // as the nearest one inside.
  [[nodiscard]] LinearColour apply(const LinearColour& colour) const;
};

// True if the text is meant as a .cube file: one of its lines states the table's size.
bool is_cube(std::string_view text);

// Throws Error kInput with the line number.
Cube parse_cube(std::string_view text);

}  // namespace pqclient

#endif  // PQCLIENT_CUBE_FILE_H_
