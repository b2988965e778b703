// The kinds of load. Each runs a board of its own, prints its figures (report.h) and returns false
// if a bound was exceeded. Throws if it cannot run at all.
#ifndef BENCH_LOAD_RUNS_H_
#define BENCH_LOAD_RUNS_H_

#include <chrono>
#include <cstddef>

namespace load {

// `clients` that send nothing, together with 8 that query: measures the waits, the cost of each
// client, and shutdown with idle clients.
bool run_idle(size_t clients);

// `connections` one after another, closed orderly or reset, some with a query.
bool run_connections(size_t connections);

// `queries` with large answers by clients that read slowly, while another one wants quick answers.
bool run_slow_readers(size_t queries);

// `clients` of a daemon that is limited to 64 descriptors.
bool run_few_descriptors(size_t clients);

// Every kind of valid and malformed request, by 8 clients at once, for the given time.
bool run_stress(std::chrono::seconds time);

// `requests` of the same kinds: measures the resources left in use.
bool run_soak(size_t requests);

// SIGKILL in the middle of continuous updates, `kills` times: checks the documents.
bool run_kills(size_t kills);

// `requests` made from valid ones by changes of bytes, texts and lengths.
bool run_mutations(size_t requests);

}  // namespace load

#endif  // BENCH_LOAD_RUNS_H_
