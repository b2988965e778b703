// The engine's model: from stored parameters to a colour table.
#ifndef BOARD_ENGINE_MODEL_H_
#define BOARD_ENGINE_MODEL_H_

#include "colour/lut3d.h"
#include "engine/parameters.h"

namespace board::engine {

// Each lattice point goes through the enabled ones of DCI, ACM and sharpness, in this order, in
// BT.709 YCbCr; results outside R'G'B' are clipped.
Lut3d compute_lut(const Parameters& parameters);

}  // namespace board::engine

#endif  // BOARD_ENGINE_MODEL_H_
