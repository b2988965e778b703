// The dump command: a picture of the display's input or output, for a client.
#ifndef QXAIQ_DUMP_COMMAND_H_
#define QXAIQ_DUMP_COMMAND_H_

#include "qxaiq/command_packet.h"

namespace pq {

// Asks the display service for a dump, waits for it and sends it. When none comes, there is no
// reply: the client needs a time-out of its own.
//
// Runs on the client's receive thread and blocks it for 4.2 seconds. One dump is taken at a time on
// the whole board: further requests wait for their turn, in the order of their arrival, and give up
// when the daemon shuts down.
void send_dump(int sock, const CommandData_t& request);

}  // namespace pq

#endif  // QXAIQ_DUMP_COMMAND_H_
