// Counts the instructions that the program executes outside the kernel: by the processor's own
// counter where the machine shows it, else by running the program under valgrind.
#ifndef BENCH_COUNTER_H_
#define BENCH_COUNTER_H_

#include <cstdint>
#include <functional>

namespace bench {

// To be called first in main. Starts the program anew under valgrind where that is the way; ends it
// with a message where neither way is open.
void choose_counter(char** argv);

// What counts: "the processor" or "valgrind".
const char* counter_name();

// Lets valgrind note where the instructions of one run go, and write that down at the program's
// end.
void profile(const std::function<void()>& run);

// Instructions of one run, without what it takes to get going: (5 runs - 2 runs) / 3. The runs take
// place in a child process.
double count_instructions(const std::function<void()>& run);

}  // namespace bench

#endif  // BENCH_COUNTER_H_
