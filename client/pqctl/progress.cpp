#include "progress.h"

#include <algorithm>
#include <iostream>
#include <string>

namespace {

constexpr int kBarColumns = 28;
constexpr const char* kStartOfLine = "\r\x1b[K";  // and clears the line

}  // namespace

void Progress::show(double part, std::string_view text) {
  if (!is_shown_) return;
  const auto full = static_cast<std::size_t>(std::clamp(part, 0.0, 1.0) * kBarColumns);
  std::cerr << kStartOfLine << '[' << std::string(full, '#') << std::string(kBarColumns - full, '.')
            << "] " << text << std::flush;
  is_drawn_ = true;
}

void Progress::clear() {
  if (is_drawn_) std::cerr << kStartOfLine << std::flush;
  is_drawn_ = false;
}
