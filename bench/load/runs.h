// The kinds of load. Each runs a board of its own, prints what it found (report.h) and returns
// whether every bound was kept; what keeps it from running at all it throws.
#ifndef BENCH_LOAD_RUNS_H_
#define BENCH_LOAD_RUNS_H_

#include <chrono>
#include <cstddef>

namespace load {

// `clients` that say nothing beside 8 that query: how long those wait, what each costs, and how
// soon the daemon ends beside the idle ones.
bool run_idle(size_t clients);

// `connections` one after another, orderly ones and reset ones, some with a query.
bool run_connections(size_t connections);

// `queries` of large answers by clients that read slowly, while another one wants quick answers.
bool run_slow_readers(size_t queries);

// `clients` at a daemon that may have 64 descriptors.
bool run_few_descriptors(size_t clients);

// Every kind of request and of rudeness, by 8 clients at once, for so long.
bool run_stress(std::chrono::seconds time);

// `requests` of the same kinds: what they leave behind in the process.
bool run_soak(size_t requests);

// SIGKILL in the middle of continuous changes, `kills` times: what is left of the documents.
bool run_kills(size_t kills);

// `requests` that were good once and had their bytes, texts and lengths mixed up.
bool run_mutations(size_t requests);

}  // namespace load

#endif  // BENCH_LOAD_RUNS_H_
