// liblog.so of the simulated board: each line goes to standard error as it comes, at every
// priority.
//
// The daemon logs between fork and exec of a threaded process. __android_log_write therefore takes
// no lock and allocates nothing: it makes one system call for the time and one for the line.
#include <android/log.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string_view>

namespace {

// Android cuts a text after this many bytes.
constexpr size_t kMaxText = 1023;
// Keeps a line with its time and tag inside PIPE_BUF, so that a pipe takes it whole.
constexpr size_t kMaxTag = 255;

constexpr std::string_view kPriorityLetters = "??VDIWEFS";

// Seconds east of UTC, taken once: localtime needs a lock, which a forked child may find taken.
const time_t kTimeZoneOffset = [] {
  const time_t now = std::time(nullptr);
  tm local{};
  localtime_r(&now, &local);
  return static_cast<time_t>(local.tm_gmtoff);
}();

constexpr time_t kSecondsADay = 86400;

using Prefix = std::array<char, 32>;

void put_digits(char* end, int64_t value, int count) {
  for (; count > 0; --count) {
    *--end = static_cast<char>('0' + value % 10);
    value /= 10;
  }
}

// "hh:mm:ss.mmm P "
std::string_view time_and_priority(int priority, Prefix& buffer) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const int64_t second = (now.tv_sec + kTimeZoneOffset) % kSecondsADay;
  constexpr std::string_view kForm = "00:00:00.000 ? ";
  std::copy(kForm.begin(), kForm.end(), buffer.begin());
  put_digits(&buffer[2], second / 3600, 2);
  put_digits(&buffer[5], second / 60 % 60, 2);
  put_digits(&buffer[8], second % 60, 2);
  put_digits(&buffer[12], now.tv_nsec / 1000000, 3);
  if (priority >= 0 && static_cast<size_t>(priority) < kPriorityLetters.size()) {
    buffer[13] = kPriorityLetters[static_cast<size_t>(priority)];
  }
  return {buffer.data(), kForm.size()};
}

iovec part(std::string_view text) {
  return {const_cast<char*>(text.data()), text.size()};
}

}  // namespace

extern "C" int __android_log_write(int prio, const char* tag, const char* text) {
  std::string_view message(text, strnlen(text, kMaxText));
  while (message.ends_with('\n'))
    message.remove_suffix(1);

  Prefix buffer;
  std::array<iovec, 5> line{};
  int parts = 0;
  line[static_cast<size_t>(parts++)] = part(time_and_priority(prio, buffer));
  if (tag != nullptr) {
    line[static_cast<size_t>(parts++)] = part({tag, strnlen(tag, kMaxTag)});
    line[static_cast<size_t>(parts++)] = part(": ");
  }
  line[static_cast<size_t>(parts++)] = part(message);
  line[static_cast<size_t>(parts++)] = part("\n");

  ssize_t written = 0;
  do {
    written = ::writev(STDERR_FILENO, line.data(), parts);
  } while (written < 0 && errno == EINTR);
  return written < 0 ? -errno : static_cast<int>(written);
}

extern "C" int __android_log_print(int prio, const char* tag, const char* fmt, ...) {
  std::array<char, kMaxText + 1> text{};
  va_list arguments;
  va_start(arguments, fmt);
  std::vsnprintf(text.data(), text.size(), fmt, arguments);
  va_end(arguments);
  return __android_log_write(prio, tag, text.data());
}
