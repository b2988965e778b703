#include "programs/calls.h"

#include <chrono>
#include <cstring>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "description/description.h"
#include "files/files.h"

namespace board {
namespace {

std::string time_of_day() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t second = std::chrono::system_clock::to_time_t(now);
  const auto millisecond =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  std::tm local{};
  localtime_r(&second, &local);
  std::ostringstream text;
  text << std::put_time(&local, "%H:%M:%S.") << std::setfill('0') << std::setw(3) << millisecond;
  return text.str();
}

}  // namespace

std::string command_line(std::string_view program, std::span<const char* const> arguments) {
  std::ostringstream line;
  line << program;
  for (const std::string_view argument : arguments) {
    const bool plain =
        !argument.empty() && argument.find_first_of(" \t\n\"\\") == std::string_view::npos;
    line << ' ';
    if (plain) {
      line << argument;
    } else {
      line << std::quoted(argument);
    }
  }
  return line.str();
}

void record_call(std::string_view program, std::span<const char* const> arguments) {
  const int result =
      append_line(board_folder() / "calls", time_of_day() + ' ' + command_line(program, arguments));
  if (result != 0) {
    std::cerr << program << ": cannot record this call: " << std::strerror(-result) << '\n';
  }
}

}  // namespace board
