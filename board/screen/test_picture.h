// The picture that the simulated screen holds.
#ifndef BOARD_SCREEN_TEST_PICTURE_H_
#define BOARD_SCREEN_TEST_PICTURE_H_

#include "screen/picture.h"
#include "screen/screen_state.h"

namespace board::screen {

// From top to bottom, with heights in sixteenths of the picture's:
//
//   - 0..3: eight bars of equal width at full level: white, yellow, cyan, green, magenta, red,
//   blue,
//     black
//   - 3..5: the same at 75 %
//   - 5..6: a grey ramp, black at the left edge to white at the right one
//   - 6..7: ramps of red, green and blue, a third of the width each, from 0 at their left
//   - 7..9: six skin tones of equal width, from light to dark
//   - 9..16: mid-grey at the top, below it every hue from left to right, more saturated further
//   down
//
// The same bytes for the same size, on every machine of one kind.
Picture draw_test_picture(Size size);

// The full screen in one colour.
Picture draw_pattern(Size size, PatternColour colour);

}  // namespace board::screen

#endif  // BOARD_SCREEN_TEST_PICTURE_H_
