#include "launch/installation.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace board {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kCompanions[] = {"display_service"};
constexpr std::string_view kPreloadLibraries[] = {"libdrmdevice.so"};

const fs::path kBuildFolder = BOARD_BUILD_FOLDER;
const fs::path kCompanionFolder = BOARD_COMPANION_FOLDER;
const fs::path kBoardsFolder = BOARD_BOARDS_FOLDER;

}  // namespace

fs::path build_folder() {
  return kBuildFolder;
}
fs::path library_folder() {
  return kBuildFolder / "board/lib";
}
fs::path program_folder() {
  return kBuildFolder / "board/bin";
}
fs::path daemon_program() {
  return kBuildFolder / "qxaiq_tool_server";
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
      return kBuildFolder / "board/lib-without-get";
    default:
      return kBuildFolder / "board/lib-engine";
  }
}

std::vector<fs::path> companion_programs() {
  std::vector<fs::path> programs;
  for (const auto name : kCompanions) {
    if (fs::exists(kCompanionFolder / name)) programs.push_back(kCompanionFolder / name);
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
  for (const auto& entry : fs::directory_iterator(kBoardsFolder)) {
    if (entry.path().extension() == ".json") names.push_back(entry.path().stem());
  }
  std::sort(names.begin(), names.end());
  return names;
}

fs::path description_file(const std::string& name_or_file) {
  const auto names = board_names();
  if (std::find(names.begin(), names.end(), name_or_file) != names.end()) {
    return kBoardsFolder / (name_or_file + ".json");
  }
  if (fs::is_regular_file(name_or_file)) return name_or_file;
  std::string known;
  for (const auto& name : names)
    known += " " + name;
  throw std::runtime_error("there is no board \"" + name_or_file +
                           "\" and no file of that name; boards:" + known);
}

}  // namespace board
