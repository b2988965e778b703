// The photo-like part of the test picture: an evening landscape with smooth gradients, fine
// texture, near-greys and foliage greens, which bars and ramps don't have.
#ifndef BOARD_SCREEN_SCENE_H_
#define BOARD_SCREEN_SCENE_H_

#include "colour/rgb.h"

namespace board::screen {

// x: 0 left to 1 right; y: 0 top to 1 bottom. Channels may exceed 0..1 a little; the caller clips.
Rgb scene_colour(double x, double y);

}  // namespace board::screen

#endif  // BOARD_SCREEN_SCENE_H_
