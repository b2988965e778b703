// Prints instructions, one line per operation: "NAME <tab> ours <tab> floor", in instructions per
// run, after a line "# COUNTER".
//
//   bench_instructions [--growth] [NAME]...   all operations, or those whose names start with NAME
//   bench_instructions --profile NAME...      only ours, for a profile by valgrind
//   --growth: "NAME <tab> at this size <tab> at four times the size", only ours
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "bench/counter.h"
#include "bench/documents.h"
#include "bench/operations.h"

namespace {

using bench::Operation;

struct Request {
  bool growth = false;
  bool profile = false;
  std::vector<std::string_view> names;

  [[nodiscard]] bool wants(const std::string& name) const {
    for (const std::string_view wanted : names) {
      if (name.starts_with(wanted)) return true;
    }
    return names.empty();
  }
};

Request parse_arguments(int argc, char** argv) {
  Request request;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--growth") {
      request.growth = true;
    } else if (argument == "--profile") {
      request.profile = true;
    } else {
      request.names.push_back(argument);
    }
  }
  return request;
}

std::vector<Operation> wanted_operations(const Request& request,
                                         const bench::Documents& documents) {
  std::vector<Operation> operations = bench::make_operations(documents);
  std::erase_if(operations, [&](const Operation& each) { return !request.wants(each.name); });
  return operations;
}

// A cost means nothing if the result is wrong.
void check_results(const Operation& operation) {
  operation.prepare();
  operation.ours.run();
  operation.floor.run();
  if (operation.ours.result() == operation.floor.result()) return;
  std::fprintf(stderr, "bench: %s yields other bytes than its floor\n", operation.name.c_str());
  std::exit(1);
}

void print_cost(const Operation& operation) {
  check_results(operation);
  const double ours = bench::count_instructions(operation.ours.run);
  const double floor = bench::count_instructions(operation.floor.run);
  std::printf("%s\t%.0f\t%.0f\n", operation.name.c_str(), ours, floor);
  std::fflush(stdout);
}

// Each run starts from the same document, because an update brings it to the schema's size.
double cost_from_start(const Operation& operation) {
  return bench::count_instructions([&] {
    operation.prepare();
    operation.ours.run();
  });
}

void print_growth(const Operation& small, const Operation& large) {
  std::printf("%s\t%.0f\t%.0f\n", small.name.c_str(), cost_from_start(small),
              cost_from_start(large));
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  bench::choose_counter(argv);
  const Request request = parse_arguments(argc, argv);
  const bench::Documents documents = bench::create_documents();
  const std::vector<Operation> operations = wanted_operations(request, documents);
  std::printf("# %s\n", bench::counter_name());
  if (request.profile) {
    for (const Operation& operation : operations) {
      check_results(operation);
      bench::profile(operation.ours.run);
    }
    return 0;
  }
  if (!request.growth) {
    std::ranges::for_each(operations, print_cost);
    return 0;
  }
  const std::vector<Operation> large_operations = wanted_operations(
      request,
      {bench::four_times_as_large(documents.pq), bench::four_times_as_large(documents.aipq)});
  for (size_t i = 0; i < operations.size(); ++i)
    print_growth(operations[i], large_operations[i]);
  return 0;
}
