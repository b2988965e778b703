// The content of a new board's base-parameter store: the calibration of a plausible panel.
// No value is zero where zero would hide a mistake, and no two members of the sharpening and AI
// records are alike, so that a mix-up of two members shows.
#ifndef BOARD_BASEPARAMETER_PANEL_DEFAULTS_H_
#define BOARD_BASEPARAMETER_PANEL_DEFAULTS_H_

#include <baseparameter_api.h>

#include <cstdint>

namespace board {

struct PanelDefaults {
  uint16_t version[2];
  pq_tuning_info tuning;
  pq_sharp_info sharp;
  aipq_info ai;
};

// The ACM tables follow the version: a store of version 2.0 keeps the hardware's own raw codes
// (deltas around a middle of 128 for luma and saturation, 64 for hue, gains in the first row only,
// some out of range); later stores keep signed values ready for use.
PanelDefaults panel_defaults(uint16_t major_version, uint16_t minor_version);

}  // namespace board

#endif  // BOARD_BASEPARAMETER_PANEL_DEFAULTS_H_
