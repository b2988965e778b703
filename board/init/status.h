// What board_init tells the launcher: one message a datagram on a SOCK_SEQPACKET pair. The sender's
// credentials come with each, translated by the kernel, which is how the launcher learns the
// process ids as seen from outside the board's process namespace.
#ifndef BOARD_INIT_STATUS_H_
#define BOARD_INIT_STATUS_H_

#include <csignal>
#include <cstdint>

namespace board {

// Sent to board_init: end everything at once.
inline constexpr int kEndNow = SIGUSR1;

enum class StatusKind : uint32_t {
  kUp,       // sent by board_init itself, first
  kStarted,  // sent by the daemon's own process right before it becomes the daemon
  kEnded,    // value: the daemon's wait status (see waitpid)
};

struct StatusMessage {
  StatusKind kind;
  int32_t value;
};

}  // namespace board

#endif  // BOARD_INIT_STATUS_H_
