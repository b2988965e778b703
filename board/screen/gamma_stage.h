// The CRTC's one-dimensional table.
#ifndef BOARD_SCREEN_GAMMA_STAGE_H_
#define BOARD_SCREEN_GAMMA_STAGE_H_

#include <cstdint>
#include <span>
#include <vector>

namespace board::screen {

// One channel's table, spread over every input 0..65535: entry i of n stands for the input
// i/(n-1) * 65535, and between two entries the output changes evenly. The result has 65,536
// entries, so that a pixel costs one access. Fewer than two entries change nothing.
std::vector<uint16_t> spread_gamma_table(std::span<const uint16_t> table);

}  // namespace board::screen

#endif  // BOARD_SCREEN_GAMMA_STAGE_H_
