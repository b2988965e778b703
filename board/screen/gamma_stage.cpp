#include "screen/gamma_stage.h"

#include <numeric>

#include "colour/rgb.h"

namespace board::screen {

std::vector<uint16_t> spread_gamma_table(std::span<const uint16_t> table) {
  std::vector<uint16_t> spread(size_t{kFullScale} + 1);
  if (table.size() < 2) {
    std::iota(spread.begin(), spread.end(), uint16_t{0});
    return spread;
  }
  const uint64_t intervals = table.size() - 1;
  for (uint64_t input = 0; input < kFullScale; ++input) {
    const uint64_t entry = input * intervals / kFullScale;
    const uint64_t beyond = input * intervals % kFullScale;  // in 65535ths of an interval
    const uint64_t sum = table[entry] * (kFullScale - beyond) + table[entry + 1] * beyond;
    spread[input] = static_cast<uint16_t>((sum + kFullScale / 2) / kFullScale);
  }
  spread[kFullScale] = table.back();
  return spread;
}

}  // namespace board::screen
