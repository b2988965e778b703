#include "user_folders.h"

#include <cstdlib>
#include <string_view>

namespace {

// Relative paths in these variables must be ignored.
std::filesystem::path absolute_path_in(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value == '/' ? value : std::filesystem::path();
}

std::filesystem::path folder(const char* variable, const char* below_home) {
  std::filesystem::path base = absolute_path_in(variable);
  if (base.empty()) {
    base = absolute_path_in("HOME");
    if (base.empty()) return base;
    base /= below_home;
  }
  return base / "pqctl";
}

}  // namespace

std::filesystem::path configuration_folder() {
  return folder("XDG_CONFIG_HOME", ".config");
}

std::filesystem::path state_folder() {
  return folder("XDG_STATE_HOME", ".local/state");
}
