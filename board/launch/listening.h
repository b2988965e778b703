// What becomes of a TCP port (IPv4) of the caller's network, asked of the kernel: a connection made
// to find out would be a client that the daemon has to serve.
#ifndef BOARD_LAUNCH_LISTENING_H_
#define BOARD_LAUNCH_LISTENING_H_

#include <cstdint>

namespace board {

// Whether somebody listens on the port.
bool listening(uint16_t port);

// Whether the connections to the port hold bytes that their listener has not taken yet.
// client_port: of one client's connection; 0: of any.
bool holds_unread_bytes(uint16_t port, uint16_t client_port = 0);

}  // namespace board

#endif  // BOARD_LAUNCH_LISTENING_H_
