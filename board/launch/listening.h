// The state of a TCP port (IPv4) of the caller's network, as the kernel reports it: a connection
// made to find out would be a client that the daemon has to serve.
#ifndef BOARD_LAUNCH_LISTENING_H_
#define BOARD_LAUNCH_LISTENING_H_

#include <cstdint>

namespace board {

// True if a process listens on the port.
bool listening(uint16_t port);

// True if connections to the port hold bytes that their listener has not received yet.
// client_port: of one client's connection; 0: of any.
bool holds_unread_bytes(uint16_t port, uint16_t client_port = 0);

}  // namespace board

#endif  // BOARD_LAUNCH_LISTENING_H_
