// The measured operations of the daemon, each with its floor.
#ifndef BENCH_OPERATIONS_H_
#define BENCH_OPERATIONS_H_

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "bench/documents.h"
#include "bench/floors.h"

namespace bench {

// One way to do something. `run` does it and keeps its result; it can be repeated.
struct Way {
  std::function<void()> run;
  std::function<std::string()> result;  // of the last run
};

struct Operation {
  std::string name;
  std::function<void()> prepare;  // puts documents, cache and environment in place
  Way ours;
  Way floor;
  std::optional<Task> task;  // of a request
};

// All operations, on documents of these texts.
std::vector<Operation> make_operations(const Documents& documents);

}  // namespace bench

#endif  // BENCH_OPERATIONS_H_
