// Prints what the requests cost a daemon that keeps its documents in trees of RapidJSON, the
// fastest library that a C++ programmer would take: a line each, "NAME <tab> instructions". It does
// what the floor does, and gives the same bytes.
#include <rapidjson/document.h>
#include <rapidjson/pointer.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "bench/counter.h"
#include "bench/operations.h"

namespace {

using bench::Operation;
using bench::Task;

// With a tab behind each member's colon, as the documents have it. No text in them holds ": ".
std::string print(const rapidjson::Value& tree) {
  rapidjson::StringBuffer text;
  rapidjson::PrettyWriter writer(text);
  writer.SetIndent('\t', 1);
  writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
  tree.Accept(writer);
  std::string result(text.GetString(), text.GetSize());
  for (size_t at = 0; (at = result.find(": ", at)) != std::string::npos;)
    result[++at] = '\t';
  return result;
}

std::string run_query(const Task& task, rapidjson::Document& tree, rapidjson::Document& operation) {
  operation.FindMember("platform")->value.SetInt(bench::kPlatformNumber);
  rapidjson::Value& parent = task.in_parameters ? tree.FindMember("pq_tuning_param")->value : tree;
  rapidjson::Value& section = parent.FindMember(task.section.c_str())->value;
  operation.AddMember("value", section, operation.GetAllocator());
  return print(operation);
}

std::string run_change(const Task& task, rapidjson::Document& tree,
                       rapidjson::Document& operation) {
  const std::string start = task.in_parameters ? "/pq_tuning_param" : "";
  const std::string path = start + operation.FindMember("path")->value.GetString();
  rapidjson::Pointer(path.c_str())
      .Set(tree, operation.FindMember("value")->value, tree.GetAllocator());
  return print(tree);
}

std::string run(const Task& task) {
  const pq::TextPtr text(j2s_read_file(task.document, nullptr));
  rapidjson::Document tree;
  tree.Parse(text.get());
  rapidjson::Document operation(&tree.GetAllocator());
  operation.Parse(task.request.data() + 1, task.request.size() - 2);
  return task.section.empty() ? run_change(task, tree, operation)
                              : run_query(task, tree, operation);
}

void print_cost(const Operation& operation) {
  const Task& task = *operation.task;
  operation.prepare();
  const std::string result = run(task);
  operation.floor.run();
  if (result != operation.floor.result()) {
    std::fprintf(stderr, "bench: RapidJSON's %s gives other bytes\n", operation.name.c_str());
    std::exit(1);
  }
  const double cost = bench::count_instructions([&] {
    if (run(task).empty()) std::abort();
  });
  std::printf("%s\t%.0f\n", operation.name.c_str(), cost);
}

}  // namespace

int main(int /*argc*/, char** argv) {
  bench::choose_counter(argv);
  const bench::Documents documents = bench::create_documents();
  for (const Operation& operation : bench::make_operations(documents)) {
    if (operation.task) print_cost(operation);
  }
  return 0;
}
