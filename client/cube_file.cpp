#include "pqclient/cube_file.h"

#include <algorithm>
#include <cmath>

#include "pqclient/error.h"
#include "pqclient/text_scanner.h"

namespace pqclient {
namespace {

constexpr int kMaxSize3d = 256;
constexpr int kMaxSize1d = 65536;
constexpr std::string_view kBlanks = " \t";

class CubeParser {
 public:
  Cube parse(std::string_view text) {
    while (!text.empty()) {
      ++line_;
      take(take_line(text));
    }
    if (cube_.size == 0) fail("there is no LUT_3D_SIZE or LUT_1D_SIZE");
    if (cube_.points.size() != expected_points()) {
      fail("there should be " + std::to_string(expected_points()) + " rows of three numbers, not " +
           std::to_string(cube_.points.size()));
    }
    for (std::size_t i = 0; i < 3; ++i) {
      if (!(cube_.domain_low.at(i) < cube_.domain_high.at(i))) fail("the domain is empty");
    }
    return std::move(cube_);
  }

 private:
  void take(std::string_view line) {
    if (line.starts_with("TITLE")) {
      const std::size_t from = line.find('"');
      const std::size_t to = line.rfind('"');
      if (to > from) cube_.title = line.substr(from + 1, to - from - 1);
      return;
    }
    const auto words = words_of(line, kBlanks);
    if (words.empty()) return;
    if (words[0] == "LUT_3D_SIZE") {
      take_size(words, 3, kMaxSize3d);
    } else if (words[0] == "LUT_1D_SIZE") {
      take_size(words, 1, kMaxSize1d);
    } else if (words[0] == "DOMAIN_MIN") {
      cube_.domain_low = colour_in(words, 1);
    } else if (words[0] == "DOMAIN_MAX") {
      cube_.domain_high = colour_in(words, 1);
    } else if (words[0] == "LUT_1D_INPUT_RANGE" || words[0] == "LUT_3D_INPUT_RANGE") {
      take_range(words);
    } else {
      if (cube_.size == 0) fail("LUT_3D_SIZE or LUT_1D_SIZE must come before the rows");
      if (cube_.points.size() == expected_points()) {
        fail("there are more rows than the size allows");
      }
      cube_.points.push_back(colour_in(words, 0));
    }
  }

  void take_size(const std::vector<std::string_view>& words, int dimensions, int max) {
    const auto size = words.size() == 2 ? decimal_in(words[1]) : std::nullopt;
    if (!size || *size < 2 || *size > max || *size != std::floor(*size)) {
      fail(std::string(words[0]) + " takes one number, 2 to " + std::to_string(max));
    }
    cube_.dimensions = dimensions;
    cube_.size = static_cast<int>(*size);
  }

  // Some grading tools write the domain like this, one for all channels.
  void take_range(const std::vector<std::string_view>& words) {
    const auto low = words.size() == 3 ? decimal_in(words[1]) : std::nullopt;
    const auto high = words.size() == 3 ? decimal_in(words[2]) : std::nullopt;
    if (!low || !high) fail(std::string(words[0]) + " takes two numbers");
    cube_.domain_low.fill(*low);
    cube_.domain_high.fill(*high);
  }

  LinearColour colour_in(const std::vector<std::string_view>& words, std::size_t first) {
    if (words.size() != first + 3) fail("there should be three numbers");
    LinearColour colour{};
    for (std::size_t i = 0; i < 3; ++i) {
      const auto number = decimal_in(words[first + i]);
      if (!number) fail("\"" + std::string(words[first + i]) + "\" is not a number");
      colour.at(i) = *number;
    }
    return colour;
  }

  [[nodiscard]] std::size_t expected_points() const {
    const auto size = static_cast<std::size_t>(cube_.size);
    return cube_.dimensions == 1 ? size : size * size * size;
  }

  [[noreturn]] void fail(const std::string& text) const {
    throw Error(ErrorKind::kInput, "line " + std::to_string(line_) + " of the .cube file: " + text);
  }

  Cube cube_;
  int line_ = 0;
};

// The index of the point below along an edge, and the fraction of the way to the next.
struct Place {
  std::size_t index;
  double part;
};

Place place_of(const Cube& cube, double value, std::size_t channel) {
  const double low = cube.domain_low.at(channel);
  const double high = cube.domain_high.at(channel);
  const double place = std::clamp((value - low) / (high - low), 0.0, 1.0) * (cube.size - 1);
  const auto index =
      std::min(static_cast<std::size_t>(place), static_cast<std::size_t>(cube.size - 2));
  return {index, place - static_cast<double>(index)};
}

}  // namespace

LinearColour Cube::apply(const LinearColour& colour) const {
  const std::array place = {place_of(*this, colour[0], 0), place_of(*this, colour[1], 1),
                            place_of(*this, colour[2], 2)};
  LinearColour result{};
  if (dimensions == 1) {
    for (std::size_t i = 0; i < 3; ++i) {
      const auto [index, part] = place.at(i);
      result.at(i) = std::lerp(points[index].at(i), points[index + 1].at(i), part);
    }
    return result;
  }
  const auto edge = static_cast<std::size_t>(size);
  for (unsigned corner = 0; corner < 8; ++corner) {
    double weight = 1;
    std::size_t index = 0;
    std::size_t stride = 1;
    for (std::size_t i = 0; i < 3; ++i, stride *= edge) {
      const std::size_t up = corner >> i & 1;
      weight *= up == 1 ? place.at(i).part : 1 - place.at(i).part;
      index += stride * (place.at(i).index + up);
    }
    for (std::size_t i = 0; i < 3; ++i)
      result.at(i) += weight * points[index].at(i);
  }
  return result;
}

bool is_cube(std::string_view text) {
  while (!text.empty()) {
    const std::string_view line = take_line(text);
    if (line.starts_with("LUT_1D_SIZE") || line.starts_with("LUT_3D_SIZE")) return true;
  }
  return false;
}

Cube parse_cube(std::string_view text) {
  return CubeParser().parse(text);
}

}  // namespace pqclient
