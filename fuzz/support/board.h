// What stands below the daemon's code while it is fuzzed: the board in process, its faults, and the
// type tables. Documents and dumps are real files in a private root.
#ifndef FUZZ_SUPPORT_BOARD_H_
#define FUZZ_SUPPORT_BOARD_H_

#include <map>
#include <string>
#include <string_view>

#include "in_process/platform.h"

namespace fuzz {

// One execution's, beside in_process::platform. Not for threads: targets call the daemon's code on
// one.
struct Board {
  bool properties_can_be_set = true;
  bool programs_start = true;
  bool sends_are_cut = false;       // each is taken in pieces, with interruptions between them
  int failing_display_call = 0;     // this call to libdrm fails, counted from 1; 0: none does
  int display_calls = 0;            // so far
  bool has_parameters = false;      // the base-parameter store
  std::map<int, std::string> sent;  // by socket
};
inline Board board;

// Both as new.
void power_on();

// The bytes of each base-parameter record; zeros follow. None: the store has no records.
void fill_parameters(std::string_view bytes);

// Whether the type tables are those of the daemon, or have the same members with short arrays:
// thousands of requests a second instead of a hundred.
void use_full_tables(bool full);
bool full_tables();

}  // namespace fuzz

#endif  // FUZZ_SUPPORT_BOARD_H_
