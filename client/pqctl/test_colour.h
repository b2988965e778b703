// Test colours as people write them.
#ifndef PQCTL_TEST_COLOUR_H_
#define PQCTL_TEST_COLOUR_H_

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct TestColour {
  std::string name;  // as written
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
};

// "red", "grey 50%", "#ff8000", "255 128 0". A percentage refers to the code: 50% of white is 128.
// Throws Error kInput with the valid forms.
TestColour parse_colour(const std::vector<std::string>& words);

struct PatternStep {
  TestColour colour;
  std::optional<std::chrono::milliseconds> time;  // its duration; none: the same as for the others
};

// One line per step: a colour, and optionally its duration: "grey 50% 3s". A # followed by a blank
// starts a comment. Throws Error kInput with the line number.
std::vector<PatternStep> parse_sequence(std::string_view text);

// Black to white in steps of a tenth, then the primaries and their mixtures.
std::vector<PatternStep> builtin_sequence();

#endif  // PQCTL_TEST_COLOUR_H_
