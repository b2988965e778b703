// Counts the instructions that the program executes outside the kernel: with the processor's own
// counter if the machine exposes it, otherwise by running the program under valgrind.
#ifndef BENCH_COUNTER_H_
#define BENCH_COUNTER_H_

#include <cstdint>
#include <functional>

namespace bench {

// Must be called first in main. Restarts the program under valgrind if there is no processor
// counter; ends it with a message if neither is available.
void choose_counter(char** argv);

// The source of the counts: "the processor" or "valgrind".
const char* counter_name();

// Makes valgrind record the instructions of one run by function, and write them when the program
// exits.
void profile(const std::function<void()>& run);

// Instructions of one run, without the fixed overhead: (5 runs - 2 runs) / 3. The runs take place
// in a child process.
double count_instructions(const std::function<void()>& run);

}  // namespace bench

#endif  // BENCH_COUNTER_H_
