// Shows a change of the PQ parameters on the display.
//
// Display failures are logged where they happen and change nothing else: the parameters are already
// stored. Callable from any thread; each blocks for what the redraw takes (2 seconds), and two at
// once take turns at the display.
#ifndef QXAIQ_PQ_DISPLAY_H_
#define QXAIQ_PQ_DISPLAY_H_

#include "j2s/pq_schema.h"

namespace pq {

// Sets the picture controls and loads the gamma tables scaled by the gains.
//   low latency    redraws first; the controls and gains of the parameters, all neutral unless
//                  cscEnable is set
//   any other mode neutral controls, the gains whatever cscEnable says; the display service does
//                  the rest, told by the timeline counter; redraws last
// The parameters' gamma tables are scaled in place.
void show_colour_space(pq_tuning_param& parameters);

// Has the engine compute a new 3D LUT, store it and write it to the next "/data/lut_%d.cube". The
// files are numbered from 0 in each run of the process.
void show_lut();

// Loads the gamma tables as they are. The gains come back with the next change of the colour space.
void show_gamma(struct gamma& tables);

}  // namespace pq

#endif  // QXAIQ_PQ_DISPLAY_H_
