// Converts the simulated board's pictures to the tuning client's.
#ifndef TESTS_SUPPORT_IN_8_BITS_H_
#define TESTS_SUPPORT_IN_8_BITS_H_

#include "pqclient/dump.h"
#include "screen/picture.h"

inline pqclient::Picture in_8_bits(const board::screen::Picture& picture) {
  const auto [width, height] = picture.size;
  pqclient::Picture result{static_cast<int>(width), static_cast<int>(height), {}};
  result.rgb.reserve(3 * picture.pixels.size());
  for (const board::Rgb16& pixel : picture.pixels) {
    for (const int channel : {pixel.red, pixel.green, pixel.blue})
      result.rgb.push_back(static_cast<std::uint8_t>((channel + 128) / 257));
  }
  return result;
}

#endif  // TESTS_SUPPORT_IN_8_BITS_H_
