#include "fuzz/support/input.h"

#include <algorithm>

#include "base/log.h"
#include "fuzz/support/board.h"

namespace fuzz {
namespace {

uint32_t hash(std::string_view text) {
  uint32_t value = 2166136261U;
  for (const char byte : text)
    value = (value ^ static_cast<uint8_t>(byte)) * 16777619U;
  return value ^ (value >> 16);
}

}  // namespace

std::string_view Input::line() {
  const std::string_view line = rest_.substr(0, rest_.find('\n'));
  rest_.remove_prefix(std::min(line.size() + 1, rest_.size()));
  return line;
}

void start_board(Input& input) {
  use_full_tables(hash(input.rest()) % 4096 == 0);
  const std::string_view settings = input.line();
  const int flags = settings.empty() ? 0 : settings[0] % 32;
  power_on();
  pq::log_level = (flags & 1) != 0 ? -1 : 5;
  board.programs_start = (flags & 2) == 0;
  board.properties_can_be_set = (flags & 4) == 0;
  in_process::platform.properties["ro.board.platform"] = (flags & 8) != 0 ? "none" : "qxt200";
  board.sends_are_cut = (flags & 16) != 0;
  board.failing_display_call = settings.size() < 2 ? 0 : settings[1] % 32;
}

}  // namespace fuzz
