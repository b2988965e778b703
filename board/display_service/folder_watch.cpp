#include "display_service/folder_watch.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace board::screen {
namespace {

constexpr uint32_t kInteresting = IN_MOVED_TO | IN_CLOSE_WRITE | IN_DELETE;

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

FolderWatch::FolderWatch() : descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  if (descriptor_ < 0) fail("cannot watch folders");
}

FolderWatch::~FolderWatch() {
  close(descriptor_);
}

void FolderWatch::add(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  const int watch = inotify_add_watch(descriptor_, folder.c_str(), kInteresting);
  if (watch < 0) fail("cannot watch " + folder.string());
  folders_[watch] = folder;
}

std::vector<FolderWatch::Event> FolderWatch::wait(
    std::optional<std::chrono::milliseconds> timeout) {
  pollfd readable{descriptor_, POLLIN, 0};
  // An interrupted wait counts as one that is over: the caller waits again.
  if (poll(&readable, 1, timeout ? static_cast<int>(timeout->count()) : -1) <= 0) return {};

  std::array<char, 16384> buffer{};
  const ssize_t size = read(descriptor_, buffer.data(), buffer.size());
  std::vector<Event> events;
  for (ssize_t start = 0; start < size;) {
    inotify_event event{};
    std::memcpy(&event, &buffer[static_cast<size_t>(start)], sizeof(event));
    const char* name = &buffer[static_cast<size_t>(start)] + sizeof(event);
    if ((event.mask & IN_Q_OVERFLOW) != 0) events.push_back({});
    if (event.len > 0 && name[0] != '.') events.push_back({folders_[event.wd], name});
    start += static_cast<ssize_t>(sizeof(event) + event.len);
  }
  return events;
}

}  // namespace board::screen
