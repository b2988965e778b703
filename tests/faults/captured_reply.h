// Replies of requests that are handed to the handler without a connection.
#ifndef TESTS_FAULTS_CAPTURED_REPLY_H_
#define TESTS_FAULTS_CAPTURED_REPLY_H_

#include <sys/types.h>

#include <cstddef>
#include <string>

namespace faults {

// In place of a socket: what is sent to it is kept.
inline constexpr int kCaptured = -2;

// What has been sent since the last call.
std::string take_reply();

// For the wrapper around sending. Returns `size`.
ssize_t capture(const void* bytes, size_t size);

}  // namespace faults

#endif  // TESTS_FAULTS_CAPTURED_REPLY_H_
