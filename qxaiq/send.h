// Sending replies to clients that may be slow, or gone.
#ifndef QXAIQ_SEND_H_
#define QXAIQ_SEND_H_

#include <sys/types.h>

#include <span>

namespace pq {

// Sends all bytes. Waits for a client that does not read, up to 30 seconds without progress; gives
// up earlier when the process is asked to shut down. The connection is shut down then.
// Returns the number of bytes, or -1. A vanished client raises no signal.
[[nodiscard]] ssize_t send_all(int socket, std::span<const char> bytes);

}  // namespace pq

#endif  // QXAIQ_SEND_H_
