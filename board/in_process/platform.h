// The board in the caller's own process: the platform's libraries for programs that run the
// daemon's code many thousand times, where each answer has to come at once. Properties and base
// parameters are members here, a log line is formatted and dropped, the display is one panel that
// takes everything. Each library is linked by itself, before the platform's own.
//
// An invalid call (a handle that is not open, a property of another object) ends the process.
#ifndef BOARD_IN_PROCESS_PLATFORM_H_
#define BOARD_IN_PROCESS_PLATFORM_H_

#include <cstdlib>
#include <map>
#include <string>

#include "baseparameter/panel_defaults.h"

namespace in_process {

enum class Call {
  kDisplay,     // any to libdrm, but those that free
  kProperty,    // setting one
  kParameters,  // any to the base-parameter store
};

// To be changed only while nobody calls the libraries.
struct Platform {
  std::map<std::string, std::string, std::less<>> properties;
  board::PanelDefaults parameters{};
  bool (*fails)(Call call) = [](Call) { return false; };  // asked once for each call
};
inline Platform platform;

// For the libraries: ends the process when their caller does what it must not.
inline void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace in_process

#endif  // BOARD_IN_PROCESS_PLATFORM_H_
