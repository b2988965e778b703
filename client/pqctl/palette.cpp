#include "palette.h"

#include <unistd.h>

#include <cstdlib>

namespace {

bool wants_color(ColorUse use, int descriptor) {
  if (use != ColorUse::kAuto) return use == ColorUse::kAlways;
  const char* no_color = std::getenv("NO_COLOR");
  return (no_color == nullptr || *no_color == '\0') && isatty(descriptor) != 0;
}

}  // namespace

Palette::Palette(ColorUse use, int descriptor) : is_on_(wants_color(use, descriptor)) {}

std::string Palette::in(std::string_view sgr, std::string_view text) const {
  if (!is_on_) return std::string(text);
  std::string coloured("\x1b[");
  return coloured.append(sgr).append("m").append(text).append("\x1b[0m");
}
