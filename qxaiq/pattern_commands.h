// The commands around test patterns. Both run on the client's receive thread and block it for the
// time that the board needs (2 seconds and more).
#ifndef QXAIQ_PATTERN_COMMANDS_H_
#define QXAIQ_PATTERN_COMMANDS_H_

#include "qxaiq/command_packet.h"

namespace pq {

// Shows the colour in dat[0..2] on the whole screen, then acknowledges.
void show_pattern(int sock, const CommandData_t& request);

// Switches DCI off in the stored document (dat[0] 0x80) or back on as it was (0x81, which also
// closes the pattern), then acknowledges. The switch that was off before is saved in the process:
// entering twice loses it, and leaving without having entered leaves DCI off. Tools know that.
void switch_pattern_mode(int sock, const CommandData_t& request);

}  // namespace pq

#endif  // QXAIQ_PATTERN_COMMANDS_H_
