// Text colours: only on a terminal, and only if NO_COLOR is not set (no-color.org).
#ifndef PQCTL_PALETTE_H_
#define PQCTL_PALETTE_H_

#include <string>
#include <string_view>

#include "options.h"

class Palette {
 public:
  // descriptor: the text's destination. --color overrides both terminal and NO_COLOR.
  Palette(ColorUse use, int descriptor);

  [[nodiscard]] std::string bold(std::string_view text) const { return in("1", text); }
  [[nodiscard]] std::string dim(std::string_view text) const { return in("2", text); }
  [[nodiscard]] std::string red(std::string_view text) const { return in("31", text); }
  [[nodiscard]] std::string green(std::string_view text) const { return in("32", text); }
  [[nodiscard]] std::string yellow(std::string_view text) const { return in("33", text); }

  [[nodiscard]] bool is_on() const { return is_on_; }

 private:
  // sgr: parameters of the control sequence "select graphic rendition" (ECMA-48).
  [[nodiscard]] std::string in(std::string_view sgr, std::string_view text) const;

  bool is_on_;
};

#endif  // PQCTL_PALETTE_H_
