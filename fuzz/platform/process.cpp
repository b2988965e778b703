// Log, properties, programs, waits and sockets. The __wrap_ functions stand for the C library's
// by way of the linker (see CMakeLists.txt).
#include <android/log.h>
#include <cutils/properties.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "fuzz/platform/platform.h"
#include "fuzz/support/check.h"

using fuzz::platform;

// Lines are formatted, so that their arguments are read, and thrown away.
int __android_log_print(int /*priority*/, const char* /*tag*/, const char* format, ...) {
  std::array<char, 1200> line{};
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(line.data(), line.size(), format, arguments);
  va_end(arguments);
  return length;
}

int __android_log_write(int /*priority*/, const char* /*tag*/, const char* text) {
  return static_cast<int>(std::strlen(text)) + 1;
}

int property_get(const char* key, char* value, const char* default_value) {
  const auto found = platform.properties.find(key);
  std::string_view text = default_value == nullptr ? "" : default_value;
  if (found != platform.properties.end() && !found->second.empty()) text = found->second;
  text = text.substr(0, PROPERTY_VALUE_MAX - 1);
  *std::copy(text.begin(), text.end(), value) = '\0';
  return static_cast<int>(text.size());
}

int32_t property_get_int32(const char* key, int32_t default_value) {
  std::array<char, PROPERTY_VALUE_MAX> text{};
  char* end = text.data();
  if (property_get(key, text.data(), nullptr) == 0) return default_value;
  const intmax_t number = std::strtoimax(text.data(), &end, 0);
  const bool fits = *end == '\0' && number == static_cast<int32_t>(number);
  return fits ? static_cast<int32_t>(number) : default_value;
}

int property_set(const char* key, const char* value) {
  if (!platform.properties_can_be_set) return -1;
  fuzz::require(std::strlen(value) < PROPERTY_VALUE_MAX, "a property's value fits");
  platform.properties[key] = value;
  return 0;
}

extern "C" {

pid_t __wrap_fork() {
  constexpr pid_t kSomeChild = 4711;
  return platform.programs_start ? kSomeChild : -1;
}

int __wrap_clock_nanosleep(clockid_t /*clock*/, int /*flags*/, const timespec* /*time*/,
                           timespec* /*left*/) {
  return 0;
}

ssize_t __wrap_sendto(int socket, const void* bytes, size_t size, int flags,
                      const sockaddr* /*address*/, socklen_t /*length*/) {
  fuzz::require((flags & MSG_NOSIGNAL) != 0, "no send can raise a signal");
  std::string& sent = platform.sent[socket];
  if (platform.sends_are_cut) {
    static bool interrupted = false;
    interrupted = !interrupted;
    if (interrupted) {
      errno = sent.size() % 2 == 0 ? EINTR : EAGAIN;
      return -1;
    }
    size = std::min(size, size / 2 + 1);
  }
  sent.append(static_cast<const char*>(bytes), size);
  return static_cast<ssize_t>(size);
}

}  // extern "C"
