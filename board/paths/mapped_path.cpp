#include "paths/mapped_path.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace board {
namespace {

// "/data=/host/state/data:/var/cache=..." as the launcher wrote it. Read anew at each call: nothing
// then depends on the order in which libraries are initialised.
std::string_view mapping() {
  const char* text = std::getenv("BOARD_PATHS");
  return text != nullptr ? text : "";
}

bool inside(std::string_view path, std::string_view folder) {
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

}  // namespace

MappedPath::MappedPath(const char* path) : path_(path) {
  if (path == nullptr || path[0] != '/') return;
  const std::string_view wanted(path);
  for (std::string_view rest = mapping(); !rest.empty();) {
    const std::string_view entry = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(entry.size() + 1, rest.size()));
    const size_t equals = entry.find('=');
    if (equals == std::string_view::npos || !inside(wanted, entry.substr(0, equals))) continue;
    const std::string_view host = entry.substr(equals + 1);
    const std::string_view tail = wanted.substr(equals);
    if (host.size() + tail.size() >= sizeof(buffer_)) return;
    char* end = std::copy(host.begin(), host.end(), buffer_);
    end = std::copy(tail.begin(), tail.end(), end);
    *end = '\0';
    path_ = buffer_;
    return;
  }
}

}  // namespace board
