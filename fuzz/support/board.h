// The platform below the daemon's code while it is fuzzed: the in-process board, its faults, and
// the type tables. Documents and dumps are real files in a private root.
#ifndef FUZZ_SUPPORT_BOARD_H_
#define FUZZ_SUPPORT_BOARD_H_

#include <map>
#include <string>
#include <string_view>

#include "in_process/platform.h"

namespace fuzz {

// The state of one execution, in addition to in_process::platform. Not thread-safe: targets call
// the daemon's code on one thread.
struct Board {
  bool properties_can_be_set = true;
  bool programs_start = true;
  bool sends_are_cut = false;       // each send is taken in pieces, with interruptions between them
  int failing_display_call = 0;     // the libdrm call that fails, counted from 1; 0: none
  int display_calls = 0;            // so far
  bool has_parameters = false;      // the base-parameter store
  std::map<int, std::string> sent;  // by socket
};
inline Board board;

// Resets both.
void power_on();

// Sets the bytes of each base-parameter record; zeros follow. Empty: the store has no records.
void fill_parameters(std::string_view bytes);

// Selects the daemon's full type tables, or tables with the same members but short arrays: these
// allow thousands of requests a second instead of a hundred.
void use_full_tables(bool full);
bool full_tables();

}  // namespace fuzz

#endif  // FUZZ_SUPPORT_BOARD_H_
