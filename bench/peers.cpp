// Prints the cost of reading the PQ document, changing one member and writing it with JSON
// libraries that a C++ programmer might choose, one line each: "LIBRARY <tab> instructions <tab>
// ours".
// Theirs goes from text to text; ours includes everything that the daemon does for such an update.
#include <rapidjson/document.h>
#include <rapidjson/pointer.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "bench/counter.h"
#include "bench/operations.h"

namespace {

constexpr char kMember[] = "/pq_tuning_param/csc/cscBrightness";
constexpr int kValue = 300;

std::string change_with_nlohmann(const std::string& document) {
  auto tree = nlohmann::ordered_json::parse(document);
  tree[nlohmann::ordered_json::json_pointer(kMember)] = kValue;
  return tree.dump(1, '\t');
}

std::string change_with_rapidjson(const std::string& document) {
  rapidjson::Document tree;
  tree.Parse(document.data(), document.size());
  rapidjson::Pointer(kMember).Set(tree, kValue);
  rapidjson::StringBuffer text;
  rapidjson::PrettyWriter writer(text);
  tree.Accept(writer);
  return {text.GetString(), text.GetSize()};
}

double cost_of_ours(const bench::Documents& documents) {
  for (const bench::Operation& operation : bench::make_operations(documents)) {
    if (operation.name != "updatePQ member") continue;
    operation.prepare();
    return bench::count_instructions(operation.ours.run);
  }
  std::abort();
}

void print_peer(const char* name, std::string (*change)(const std::string&),
                const std::string& document, double ours) {
  const double cost = bench::count_instructions([&] {
    if (change(document).empty()) std::abort();
  });
  std::printf("%s\t%.0f\t%.0f\n", name, cost, ours);
}

}  // namespace

int main(int /*argc*/, char** argv) {
  bench::choose_counter(argv);
  const bench::Documents documents = bench::create_documents();
  const double ours = cost_of_ours(documents);
  print_peer("nlohmann-json", change_with_nlohmann, documents.pq, ours);
  print_peer("RapidJSON", change_with_rapidjson, documents.pq, ours);
  return 0;
}
