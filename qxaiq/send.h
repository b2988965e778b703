// Sending replies to clients that may be slow, or gone.
#ifndef QXAIQ_SEND_H_
#define QXAIQ_SEND_H_

#include <sys/types.h>

#include <span>

namespace pq {

// Sends all bytes. A client that does not read is waited for, up to 30 seconds without progress and
// only while the process has not been asked to end; then its connection is shut down.
// Returns the number of bytes, or -1. A vanished client raises no signal.
ssize_t send_all(int socket, std::span<const char> bytes);

}  // namespace pq

#endif  // QXAIQ_SEND_H_
