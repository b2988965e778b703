#include "bench/counter.h"

#include <linux/perf_event.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <valgrind/callgrind.h>

namespace bench {
namespace {

// Opens the processor's counter for this thread's user-space instructions; -1 if there is none.
int open_processor_counter() {
  perf_event_attr attributes{};
  attributes.type = PERF_TYPE_HARDWARE;
  attributes.size = sizeof(attributes);
  attributes.config = PERF_COUNT_HW_INSTRUCTIONS;
  attributes.disabled = 1;
  attributes.exclude_kernel = 1;
  attributes.exclude_hv = 1;
  return static_cast<int>(syscall(SYS_perf_event_open, &attributes, 0, -1, -1, 0));
}

std::string profile_path() {
  return "/tmp/bench-profile." + std::to_string(getpid());
}

// valgrind writes the count since the last dump to a numbered file, and restarts counting.
uint64_t take_valgrind_count() {
  static int dump = 0;
  CALLGRIND_DUMP_STATS;
  CALLGRIND_STOP_INSTRUMENTATION;
  const std::string path = profile_path() + "." + std::to_string(++dump);
  std::ifstream file(path);
  const std::string key = "totals: ";
  uint64_t count = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(key)) count = std::stoull(line.substr(key.size()));
  }
  std::remove(path.c_str());
  return count;
}

// processor_counter: -1 to count with valgrind.
uint64_t count_runs(const std::function<void()>& run, int times, int processor_counter) {
  if (processor_counter >= 0) {
    ioctl(processor_counter, PERF_EVENT_IOC_RESET, 0);
    ioctl(processor_counter, PERF_EVENT_IOC_ENABLE, 0);
  } else {
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
  }
  for (int i = 0; i < times; ++i)
    run();
  if (processor_counter < 0) return take_valgrind_count();
  ioctl(processor_counter, PERF_EVENT_IOC_DISABLE, 0);
  uint64_t count = 0;
  const bool complete = read(processor_counter, &count, sizeof(count)) == sizeof(count);
  return complete ? count : 0;
}

double count_here(const std::function<void()>& run) {
  constexpr int kMany = 5, kFew = 2;
  const int counter = open_processor_counter();
  const uint64_t many = count_runs(run, kMany, counter);
  const uint64_t few = count_runs(run, kFew, counter);
  return static_cast<double>(many - few) / (kMany - kFew);
}

}  // namespace

void choose_counter(char** argv) {
  if (RUNNING_ON_VALGRIND || open_processor_counter() >= 0) return;
  std::vector<std::string> command = {"valgrind", "--tool=callgrind", "--quiet",
                                      "--instr-atstart=no",
                                      "--callgrind-out-file=/tmp/bench-profile.%p"};
  std::vector<char*> arguments(command.size());
  std::ranges::transform(command, arguments.begin(), [](std::string& word) { return word.data(); });
  for (; *argv != nullptr; ++argv)
    arguments.push_back(*argv);
  arguments.push_back(nullptr);
  execvp("valgrind", arguments.data());
  std::fputs("bench: the processor's counters are not to be had, and there is no valgrind\n",
             stderr);
  std::exit(1);
}

const char* counter_name() {
  return RUNNING_ON_VALGRIND ? "valgrind" : "the processor";
}

void profile(const std::function<void()>& run) {
  run();  // the first run is not typical
  CALLGRIND_START_INSTRUMENTATION;
  run();
  CALLGRIND_STOP_INSTRUMENTATION;
}

double count_instructions(const std::function<void()>& run) {
  // Runs in a process of its own: the heap left by earlier runs would change the count.
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) std::abort();
  const pid_t child = fork();
  if (child == 0) {
    const double count = count_here(run);
    const bool written = write(ends[1], &count, sizeof(count)) == sizeof(count);
    _exit(written ? 0 : 1);
  }
  double count = 0;
  const bool complete = read(ends[0], &count, sizeof(count)) == sizeof(count);
  waitpid(child, nullptr, 0);
  close(ends[0]);
  close(ends[1]);
  if (complete) return count;
  std::fputs("bench: a measured process ended early\n", stderr);
  std::exit(1);
}

}  // namespace bench
