#include "launch/installation.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace board {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kCompanions[] = {"display_service"};
constexpr std::string_view kPreloadLibraries[] = {"libdrmdevice.so", "libboardspace.so"};

struct Places {
  fs::path board;  // holds lib, bin and the engines' folders
  fs::path companions;
  fs::path descriptions;
  fs::path daemon;
};

// Installed, qxboard finds the rest beside itself, wherever that is. All other programs, such as
// tests, use the build.
Places find_places() {
  const fs::path prefix = fs::read_symlink("/proc/self/exe").parent_path().parent_path();
  const fs::path board = prefix / "lib/qxboard";
  if (fs::is_directory(board / "boards")) {
    return {board, board / "bin", board / "boards", prefix / "bin/qxaiq_tool_server"};
  }
  const fs::path build = BOARD_BUILD_FOLDER;
  return {build / "board", BOARD_COMPANION_FOLDER, BOARD_BOARDS_FOLDER,
          build / "qxaiq_tool_server"};
}

const Places& places() {
  static const Places found = find_places();
  return found;
}

}  // namespace

fs::path installation_folder() {
  return places().board;
}
fs::path library_folder() {
  return places().board / "lib";
}
fs::path program_folder() {
  return places().board / "bin";
}
fs::path daemon_program() {
  return places().daemon;
}
fs::path proot_workarounds_library() {
  return "libboardproot.so";
}

fs::path quick_clock_library() {
  return "libboardclock.so";
}

fs::path engine_folder(Engine engine) {
  switch (engine) {
    case Engine::kMissing:
      return {};
    case Engine::kWithoutGet:
      return places().board / "lib-without-get";
    default:
      return places().board / "lib-engine";
  }
}

std::vector<fs::path> companion_programs() {
  std::vector<fs::path> programs;
  for (const auto name : kCompanions) {
    if (fs::exists(places().companions / name)) programs.push_back(places().companions / name);
  }
  return programs;
}

std::vector<fs::path> preload_libraries() {
  std::vector<fs::path> libraries;
  for (const auto name : kPreloadLibraries) {
    if (fs::exists(library_folder() / name)) libraries.emplace_back(name);
  }
  return libraries;
}

std::vector<std::string> board_names() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(places().descriptions)) {
    if (entry.path().extension() == ".json") names.push_back(entry.path().stem());
  }
  std::sort(names.begin(), names.end());
  return names;
}

fs::path description_file(const std::string& name_or_file) {
  const auto names = board_names();
  if (std::find(names.begin(), names.end(), name_or_file) != names.end()) {
    return places().descriptions / (name_or_file + ".json");
  }
  if (fs::is_regular_file(name_or_file)) return name_or_file;
  std::string known;
  for (const auto& name : names)
    known += " " + name;
  throw std::runtime_error("there is no board \"" + name_or_file +
                           "\" and no file of that name; boards:" + known);
}

}  // namespace board
