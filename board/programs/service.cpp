// /system/bin/service of the simulated board: calls to the compositor. Transaction 1006, the
// redraw, adds one to the number in the file screen/redraw of the board's folder, which the display
// service watches.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <span>
#include <string>
#include <string_view>

#include "description/description.h"
#include "files/files.h"
#include "programs/calls.h"

namespace {

constexpr std::string_view kRedrawTransaction = "1006";

// Held from reading to writing, so that no redraw of two at once is lost; its descriptor, and with
// it the lock, goes with the process.
bool lock_screen(const std::filesystem::path& folder) {
  const int lock = ::open((folder / ".redraw-lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  return lock >= 0 && ::flock(lock, LOCK_EX) == 0;
}

int redraw() {
  const auto folder = board::board_folder() / "screen";
  if (!lock_screen(folder)) {
    std::cerr << "service: cannot lock the screen: " << std::strerror(errno) << '\n';
    return 1;
  }
  const std::string count = board::read_file(folder / "redraw").value_or("0");
  const auto next = std::strtoull(count.c_str(), nullptr, 10) + 1;
  const int result = board::replace_file(folder / "redraw", std::to_string(next));
  if (result != 0) {
    std::cerr << "service: cannot redraw: " << std::strerror(-result) << '\n';
    return 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::span<const char* const> arguments(argv + 1, argv + argc);
  board::record_call("service", arguments);
  if (arguments.size() < 3 || std::string_view(arguments[0]) != "call") {
    std::cerr << "usage: service call SERVICE CODE [ARGUMENT]...\n";
    return 10;
  }
  if (std::string_view(arguments[1]) != "SurfaceFlinger") {
    std::cerr << "service: Service " << arguments[1] << " does not exist\n";
    return 10;
  }
  // Any transaction is answered; only the redraw does something.
  std::cout << "Result: Parcel(NULL)\n";
  return arguments[2] == kRedrawTransaction ? redraw() : 0;
}
