// /system/bin/am of the simulated board: the activity manager, as far as the pattern application
// needs it. The file screen/pattern in the board's folder is the screen: "R G B" while
// the application shows its colour, absent otherwise.
#include <cstring>
#include <filesystem>
#include <iostream>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "description/description.h"
#include "files/files.h"
#include "programs/calls.h"

namespace {

using Arguments = std::span<const char* const>;

constexpr std::string_view kPatternPackage = "com.qx.patterntool";
constexpr std::string_view kPatternActivity = "com.qx.patterntool/com.qx.patterntool.Display";

std::filesystem::path pattern_file() {
  return board::board_folder() / "screen/pattern";
}

int usage() {
  std::cerr << "usage: am start -n COMPONENT [--ei KEY NUMBER]...\n"
               "       am force-stop PACKAGE\n";
  return 255;
}

// A colour that is not given is 0, as the activity's own default.
int show_pattern(const std::map<std::string, std::string>& extras) {
  std::string colour;
  for (const char* channel : {"red", "green", "blue"}) {
    const auto extra = extras.find(channel);
    colour += (colour.empty() ? "" : " ") + (extra != extras.end() ? extra->second : "0");
  }
  const int result = board::replace_file(pattern_file(), colour);
  if (result != 0) {
    std::cerr << "am: cannot show the pattern: " << std::strerror(-result) << '\n';
    return 1;
  }
  return 0;
}

int start(Arguments arguments) {
  std::string component;
  std::map<std::string, std::string> extras;
  while (!arguments.empty()) {
    const std::string_view option = arguments.front();
    if (option == "-n" && arguments.size() >= 2) {
      component = arguments[1];
      arguments = arguments.subspan(2);
    } else if (option == "--ei" && arguments.size() >= 3) {
      extras[arguments[1]] = arguments[2];
      arguments = arguments.subspan(3);
    } else {
      std::cerr << "Error: Unknown option: " << option << '\n';
      return usage();
    }
  }
  std::cout << "Starting: Intent { cmp=" << component << " }\n";
  if (component != kPatternActivity) {
    std::cerr << "Error: Activity class {" << component << "} does not exist.\n";
    return 1;
  }
  return show_pattern(extras);
}

int force_stop(std::string_view package) {
  if (package == kPatternPackage) std::filesystem::remove(pattern_file());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const Arguments arguments(argv + 1, argv + argc);
  board::record_call("am", arguments);
  if (!arguments.empty() && std::string_view(arguments[0]) == "start") {
    return start(arguments.subspan(1));
  }
  if (arguments.size() == 2 && std::string_view(arguments[0]) == "force-stop") {
    return force_stop(arguments[1]);
  }
  return usage();
}
