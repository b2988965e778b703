// The platform in process: what stands below the daemon's code while it is fuzzed. Everything
// answers at once and can be told to fail; documents and dumps are real files in a private root.
#ifndef FUZZ_PLATFORM_PLATFORM_H_
#define FUZZ_PLATFORM_PLATFORM_H_

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace fuzz {

// One execution's platform. Not for threads: targets call the daemon's code on one.
struct Platform {
  std::map<std::string, std::string, std::less<>> properties;
  bool properties_can_be_set = true;
  bool programs_start = true;
  bool sends_are_cut = false;       // each is taken in pieces, with interruptions between them
  int failing_display_call = 0;     // this call to libdrm fails, counted from 1; 0: none does
  int display_calls = 0;            // so far
  std::string_view records;         // bytes of each base-parameter record; zeros follow
  std::map<int, std::string> sent;  // by socket
};
inline Platform platform;

// Whether the type tables are those of the daemon, or have the same members with short arrays:
// thousands of requests a second instead of a hundred.
void use_full_tables(bool full);
bool full_tables();

}  // namespace fuzz

#endif  // FUZZ_PLATFORM_PLATFORM_H_
