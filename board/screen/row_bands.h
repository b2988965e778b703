// Work on a picture's rows, spread over the machine's processors: a dump of a large picture has to
// be ready within seconds on a slow machine.
#ifndef BOARD_SCREEN_ROW_BANDS_H_
#define BOARD_SCREEN_ROW_BANDS_H_

#include <algorithm>
#include <cstdint>
#include <thread>
#include <vector>

namespace board::screen {

// Calls work(row) once for each row 0..rows-1, in bands that run at once and return before this
// does. `work` touches nothing that another row's call writes, and does not throw.
template <typename Work>
void for_each_row(uint32_t rows, const Work& work) {
  constexpr uint32_t kMinBand = 64;  // below it a thread costs more than it saves
  constexpr uint32_t kMaxBands = 8;
  const uint32_t bands =
      std::clamp(std::min(std::thread::hardware_concurrency(), rows / kMinBand), 1U, kMaxBands);
  const auto run = [&](uint32_t band) {
    const auto end = static_cast<uint32_t>(uint64_t{rows} * (band + 1) / bands);
    for (auto row = static_cast<uint32_t>(uint64_t{rows} * band / bands); row < end; ++row)
      work(row);
  };
  std::vector<std::jthread> threads;
  for (uint32_t band = 1; band < bands; ++band)
    threads.emplace_back(run, band);
  run(0);
}

}  // namespace board::screen

#endif  // BOARD_SCREEN_ROW_BANDS_H_
