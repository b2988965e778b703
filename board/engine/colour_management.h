// The engine's colour stage: luma, hue and saturation moved by hue (ACM).
#ifndef BOARD_ENGINE_COLOUR_MANAGEMENT_H_
#define BOARD_ENGINE_COLOUR_MANAGEMENT_H_

#include "colour/rgb.h"
#include "engine/parameters.h"

namespace board::engine {

// Hue is the angle in the Cb/Cr plane, counted from +Cb (blue) towards +Cr (red); saturation is the
// distance from grey over 0.5, at most 1. For each of luma, hue and saturation
//   change = delta(hue) * gain_by_luma/127 * gain_by_saturation/127 * master_gain/1023,
// interpolated between the tables' points, and then
//   luma *= 1 + change/256,  hue += change * 360/512 degrees,  saturation *= 1 + change/256.
// Near grey, which has no hue, the luma change fades to nothing.
YCbCr apply_acm(const AcmParameters& acm, const YCbCr& colour);

}  // namespace board::engine

#endif  // BOARD_ENGINE_COLOUR_MANAGEMENT_H_
