#include "bench/operations.h"

#include <cstdlib>
#include <memory>
#include <utility>

#include "documents/aipq_document_creator.h"
#include "documents/names.h"
#include "documents/pq_document_creator.h"
#include "documents/pq_parameters.h"
#include "qxaiq/aipq_service.h"
#include "qxaiq/pq_query.h"
#include "qxaiq/pq_update.h"

namespace bench {
namespace {

constexpr char kCache[] = "/var/cache/j2s-cache";
constexpr char kNewDocument[] = "/data/new.json";

std::string take_text(char* text) {
  const pq::TextPtr owner(text);
  return text != nullptr ? text : "";
}

pq::JsonPtr copy_of(const cJSON* tree) {
  return pq::JsonPtr(cJSON_Duplicate(tree, true));
}

// A way whose result is a text, which is freed before the next run.
template <typename MakeText>
Way text_way(MakeText make_text) {
  const auto text = std::make_shared<pq::TextPtr>();
  return {[text, make_text] { *text = pq::TextPtr(make_text()); },
          [text] { return std::string(*text ? text->get() : ""); }};
}

// A way whose result is a file.
template <typename WriteFile>
Way file_way(const char* path, WriteFile write) {
  return {write, [path] { return read_file(path); }};
}

std::string query_of(const std::string& path) {
  return R"([{"op":"get","path":")" + path + R"(","toolversion":"2.1.0","platform":1}])";
}

std::string change_of(const std::string& path, const std::string& value) {
  return R"([{"op":"replace","path":")" + path + R"(","value":)" + value +
         R"(,"toolversion":"2.1.0","platform":1}])";
}

// A gamma table as a tool sends it: 1,024 entries, one text.
std::string gamma_table() {
  std::string table = "[";
  for (int i = 0; i < 1024; ++i)
    table += (i == 0 ? "" : ",") + std::to_string(64 * i);
  return table + "]";
}

using Query = char* (*)(char*, uint32_t);
using Change = int (*)(char*, uint32_t);

class OperationList {
 public:
  explicit OperationList(const Documents& documents)
      : documents_(documents), tree_(pq::parse_json(documents.pq)) {}

  std::vector<Operation> make() {
    for (const char* section : {"csc", "dci", "sharp", "gamma", "acm"})
      add_query("getPQ", getPQ, section, pq::kPqDocument, true);
    add_change("updatePQ member", updatePQ, change_of("/csc/cscBrightness", "300"), true);
    add_change("updatePQ table", updatePQ, change_of("/gamma/gammaTab_R", gamma_table()), true);
    for (const char* table : {"acm", "dci"})
      add_query("getAIPQ", getAIPQ, table, pq::kAipqDocument, false);
    add_change("updateAIPQ", updateAIPQ, change_of("/acm/0/acmTableGainYbyY/5", "42"), false);
    add_new_document("PQ document", getJsonFromBaseparameter, documents_.pq);
    add_new_document("AIPQ document", createDefaultAIPQJson, documents_.aipq);
    add_load();
    add_dump();
    add_context("j2s_init cached", [] {});
    add_context("j2s_init rejected", [] { spoil_cache(); });
    add_context("j2s_init uncached", [] { setenv("J2S_NO_CACHE", "1", 1); });
    return std::move(operations_);
  }

 private:
  void add(std::string name, Way ours, Way floor, std::optional<Task> task = {}) {
    const auto prepare = [documents = documents_] {
      unsetenv("J2S_NO_CACHE");
      pq::J2sContext context;  // writes the cache, unless it exists
      write_file(pq::kPqDocument, documents.pq);
      write_file(pq::kAipqDocument, documents.aipq);
    };
    operations_.push_back(
        {std::move(name), prepare, std::move(ours), std::move(floor), std::move(task)});
  }

  void add_query(const std::string& name, Query query, const char* section, const char* document,
                 bool in_parameters) {
    const std::string request = query_of(std::string("/") + section);
    const auto ours = [query, request] {
      return query(const_cast<char*>(request.data()), static_cast<uint32_t>(request.size()));
    };
    const Task task = {document, request, section, in_parameters};
    const auto floor = [task] { return floor_of_query(task); };
    add(name + " " + section, text_way(ours), text_way(floor), task);
  }

  void add_change(const std::string& name, Change change, const std::string& request, bool pq) {
    const auto ours = [change, request] {
      change(const_cast<char*>(request.data()), static_cast<uint32_t>(request.size()));
    };
    const Task task = {pq ? pq::kPqDocument : pq::kAipqDocument, request, "", pq};
    const auto floor = [task] { return floor_of_change(task); };
    add(name, file_way(task.document, ours), text_way(floor), task);
  }

  // The floor copies a prepared tree and prints the copy, because some tree has to exist.
  void add_new_document(const std::string& name, int (*create)(char*),
                        const std::string& document) {
    const auto tree = std::make_shared<pq::JsonPtr>(pq::parse_json(document));
    add(name, file_way(kNewDocument, [create] { create(const_cast<char*>(kNewDocument)); }),
        text_way([tree] { return cJSON_Print(copy_of(tree->get()).get()); }));
  }

  [[nodiscard]] cJSON* parameters() const {
    return cJSON_GetObjectItem(tree_.get(), "pq_tuning_param");
  }

  // The floor parses the record's text, and does not even free the tree.
  void add_load() {
    const auto record = std::make_shared<pq::PqParameters>();
    const auto context = std::make_shared<pq::J2sContext>();
    const auto ours = [record, context, json = parameters(), tree = tree_] {
      record->load(context->get(), json);
    };
    const auto text = std::make_shared<pq::TextPtr>(cJSON_PrintUnformatted(parameters()));
    const auto trees = std::make_shared<std::vector<pq::JsonPtr>>();
    trees->reserve(64);
    const auto floor = [text, trees] { trees->emplace_back(cJSON_Parse(text->get())); };
    add("j2s load",
        {ours, [record, context] { return take_text(dump(context->get(), record->values)); }},
        {floor, [trees] { return take_text(cJSON_PrintUnformatted(trees->back().get())); }});
  }

  static char* dump(j2s_ctx* context, const pq_tuning_param& values) {
    return j2s_dump_struct(context, "pq_tuning_param", &values);
  }

  // The floor is the same as for new documents.
  void add_dump() {
    const auto record = std::make_shared<pq::PqParameters>();
    const auto context = std::make_shared<pq::J2sContext>();
    record->load(context->get(), parameters());
    add("j2s dump", text_way([record, context] { return dump(context->get(), record->values); }),
        text_way([json = parameters(), tree = tree_] {
          return cJSON_PrintUnformatted(copy_of(json).get());
        }));
  }

  static void spoil_cache() {
    std::string cache(sizeof(j2s_ctx), '\0');
    write_file(kCache, cache);
  }

  // The floor reads the cache file into memory.
  void add_context(const std::string& name, void (*before)()) {
    const auto ours = [before] {
      before();
      pq::J2sContext context;
    };
    const auto floor = [] { std::free(j2s_read_file(kCache, nullptr)); };
    const auto nothing = [] { return std::string(); };
    add(name, {ours, nothing}, {floor, nothing});
  }

  const Documents& documents_;
  std::shared_ptr<cJSON> tree_;  // of the PQ document
  std::vector<Operation> operations_;
};

}  // namespace

std::vector<Operation> make_operations(const Documents& documents) {
  return OperationList(documents).make();
}

}  // namespace bench
