#include "test_colour.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "pqclient/error.h"
#include "pqclient/text_scanner.h"

namespace {

using pqclient::Error;
using pqclient::ErrorKind;

constexpr int kFullScale = 255;

struct Name {
  std::string_view name;
  int red, green, blue;  // 0 or 1
};

constexpr std::array<Name, 10> kNames = {{{"black", 0, 0, 0},
                                          {"white", 1, 1, 1},
                                          {"grey", 1, 1, 1},
                                          {"gray", 1, 1, 1},
                                          {"red", 1, 0, 0},
                                          {"green", 0, 1, 0},
                                          {"blue", 0, 0, 1},
                                          {"cyan", 0, 1, 1},
                                          {"magenta", 1, 0, 1},
                                          {"yellow", 1, 1, 0}}};

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words)
    text.append(text.empty() ? "" : " ").append(word);
  return text;
}

[[noreturn]] void refuse(const std::vector<std::string>& words) {
  throw Error(
      ErrorKind::kInput,
      (words.empty() ? "a colour is needed" : "\"" + joined(words) + "\" is not a colour") +
          std::string(
              ": write black, white, grey, red, green, blue, cyan, magenta or "
              "yellow, with or without a percentage (grey 50%), #rrggbb, or three numbers, 0 "
              "to 255"));
}

// A whole number in the given base, 0 to 255.
std::optional<std::uint8_t> code_in(std::string_view text, int base = 10) {
  int code = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code, base);
  const bool is_code =
      error == std::errc() && end == text.data() + text.size() && code >= 0 && code <= kFullScale;
  return is_code ? std::optional(static_cast<std::uint8_t>(code)) : std::nullopt;
}

// "50%", or a code such as "128".
std::optional<double> level_in(std::string_view word) {
  if (!word.ends_with('%')) {
    const auto code = code_in(word);
    return code ? std::optional(*code * 1.0) : std::nullopt;
  }
  const auto percent = pqclient::decimal_in(word.substr(0, word.size() - 1));
  if (!percent || *percent < 0 || *percent > 100) return std::nullopt;
  return *percent / 100 * kFullScale;
}

std::optional<TestColour> named_colour(const std::vector<std::string>& words) {
  const auto* named = std::ranges::find(kNames, words[0], &Name::name);
  if (named == kNames.end() || words.size() > 2) return std::nullopt;
  const auto level = words.size() == 2 ? level_in(words[1]) : std::optional(kFullScale * 1.0);
  if (!level) return std::nullopt;
  const auto code = static_cast<std::uint8_t>(std::lround(*level));
  const auto channel = [code](int part) { return part != 0 ? code : std::uint8_t{0}; };
  return TestColour{joined(words), channel(named->red), channel(named->green),
                    channel(named->blue)};
}

std::optional<TestColour> coded_colour(const std::vector<std::string>& words) {
  std::array<std::optional<std::uint8_t>, 3> codes;
  if (words.size() == 1 && words[0].size() == 7 && words[0][0] == '#') {
    for (std::size_t i = 0; i < codes.size(); ++i)
      codes.at(i) = code_in(std::string_view(words[0]).substr(1 + 2 * i, 2), 16);
  } else if (words.size() == codes.size()) {
    for (std::size_t i = 0; i < codes.size(); ++i)
      codes.at(i) = code_in(words[i]);
  }
  if (!std::ranges::all_of(codes, [](const auto& code) { return code.has_value(); })) {
    return std::nullopt;
  }
  return TestColour{joined(words), *codes[0], *codes[1], *codes[2]};
}

// The # of a colour must not be taken for a comment.
std::string_view without_comment(std::string_view line) {
  for (std::size_t at = line.find('#'); at != std::string_view::npos; at = line.find('#', at + 1)) {
    if (at + 1 == line.size() || line[at + 1] == ' ') return line.substr(0, at);
  }
  return line;
}

std::vector<std::string> words_in(std::string_view line) {
  std::vector<std::string> words;
  while (!line.empty()) {
    const std::size_t end = std::min(line.find_first_of(" \t"), line.size());
    if (end > 0) words.emplace_back(line.substr(0, end));
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  return words;
}

// "3s"
std::optional<std::chrono::milliseconds> time_in(std::string_view word) {
  if (!word.ends_with('s')) return std::nullopt;
  constexpr double kMaxSeconds = 86'400;
  const auto seconds = pqclient::decimal_in(word.substr(0, word.size() - 1));
  if (!seconds || *seconds < 0 || *seconds > kMaxSeconds) return std::nullopt;
  return std::chrono::milliseconds(std::lround(*seconds * 1000));
}

}  // namespace

TestColour parse_colour(const std::vector<std::string>& words) {
  if (words.empty()) refuse(words);
  if (auto colour = named_colour(words)) return *colour;
  if (auto colour = coded_colour(words)) return *colour;
  refuse(words);
}

std::vector<PatternStep> parse_sequence(std::string_view text) {
  std::vector<PatternStep> steps;
  for (int line = 1; !text.empty(); ++line) {
    auto words = words_in(without_comment(pqclient::take_line(text)));
    if (words.empty()) continue;
    const auto time = time_in(words.back());
    if (time) words.pop_back();
    try {
      steps.push_back({parse_colour(words), time});
    } catch (const Error& error) {
      throw Error(error.kind(),
                  "line " + std::to_string(line) + " of the sequence: " + error.what());
    }
  }
  if (steps.empty()) throw Error(ErrorKind::kInput, "the sequence has no steps");
  return steps;
}

std::vector<PatternStep> builtin_sequence() {
  std::vector<PatternStep> steps;
  for (int percent = 0; percent <= 100; percent += 10)
    steps.push_back({parse_colour({"grey", std::to_string(percent) + "%"}), {}});
  for (const char* name : {"red", "green", "blue", "cyan", "magenta", "yellow"})
    steps.push_back({parse_colour({name}), {}});
  return steps;
}
