#include "pqclient/text_scanner.h"

#include <charconv>
#include <cmath>

namespace pqclient {

std::string_view take_line(std::string_view& text) {
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::vector<std::string_view> words_of(std::string_view line, std::string_view separators) {
  line = line.substr(0, line.find('#'));
  std::vector<std::string_view> words;
  while (!line.empty()) {
    const std::size_t end = line.find_first_of(separators);
    if (end != 0) words.push_back(line.substr(0, end));
    if (end == std::string_view::npos) break;
    line.remove_prefix(end + 1);
  }
  return words;
}

std::optional<double> decimal_in(std::string_view word) {
  if (word.starts_with('+')) word.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size() || !std::isfinite(number)) {
    return std::nullopt;
  }
  return number;
}

}  // namespace pqclient
