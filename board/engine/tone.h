// The engine's two luma stages: dynamic contrast (DCI) and what sharpening does to local contrast.
// Luma is 0..1 throughout.
#ifndef BOARD_ENGINE_TONE_H_
#define BOARD_ENGINE_TONE_H_

#include "engine/parameters.h"

namespace board::engine {

// The three curves, mixed by the weights that they have at this luma. Where all weights are zero
// no curve is asked for and the luma stays.
double apply_dci(const DciParameters& dci, double luma);

// A gentle S around the mid-tones: the slope at luma 0.5 grows by up to a quarter with the peaking
// gain; black, mid-grey and white stay. Shoot control scales what the S adds above mid-grey by
// over/127 and what it takes away below by under/127.
double apply_sharpness(const SharpParameters& sharp, double luma);

}  // namespace board::engine

#endif  // BOARD_ENGINE_TONE_H_
