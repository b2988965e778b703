// Captures the replies of requests that are passed to the handler without a connection.
#ifndef TESTS_FAULTS_CAPTURED_REPLY_H_
#define TESTS_FAULTS_CAPTURED_REPLY_H_

#include <sys/types.h>

#include <cstddef>
#include <string>

namespace faults {

// Used as the socket: everything sent to it is kept.
inline constexpr int kCaptured = -2;

// Everything sent since the last call.
std::string take_reply();

// For the wrapper around send. Returns `size`.
ssize_t capture(const void* bytes, size_t size);

}  // namespace faults

#endif  // TESTS_FAULTS_CAPTURED_REPLY_H_
