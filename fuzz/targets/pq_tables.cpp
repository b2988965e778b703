// JSON to structure and back, with the daemon's own tables. Lines after the first: a document, one
// that is loaded over it, and a query.
#include <cstdlib>
#include <memory>
#include <string>

#include "documents/pq_parameters.h"
#include "fuzz/support/check.h"
#include "fuzz/support/input.h"
#include "j2s/pq_schema.h"

namespace {

// Both halves of the configuration; the destructor frees its texts.
class Configuration {
 public:
  ~Configuration() {
    for (int scene = 0; scene < kAiSceneCount; ++scene) {
      std::free(scenes().dci[scene].name);
      std::free(scenes().acm[scene].name);
    }
    pq_tuning_param& pq = values_->pq_tuning_param;
    for (char* text :
         {pq.csc.name, pq.csc.cscMode, pq.dci.name, pq.acm.name, pq.gamma.name, pq.sharp.name}) {
      std::free(text);
    }
  }

  int load(j2s_ctx* context, std::string_view json) {
    return j2s_json_to_struct(context, pq::parse_json(json).get(), nullptr, values_.get());
  }
  std::string text(j2s_ctx* context) const {
    const pq::TextPtr text(j2s_dump_struct(context, nullptr, values_.get()));
    return text.get();
  }
  std::string bytes() const {
    return {reinterpret_cast<const char*>(values_.get()), sizeof(*values_)};
  }
  // Replaces the values that the query names in the two halves, which are the tables' last members.
  void query(j2s_ctx* context, cJSON* question) const {
    for (int index : {context->obj_count - 2, context->obj_count - 1}) {
      cJSON* item = cJSON_GetObjectItemCaseSensitive(question, context->obj_table[index].name);
      if (item == nullptr) continue;
      (void)_j2s_json_to_obj(context, item, question, index, values_.get(), true);
    }
  }

 private:
  aipq_tuning_param& scenes() { return values_->aipq_tuning_param; }

  std::unique_ptr<pq_config> values_ = std::make_unique<pq_config>();  // zeroed
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  fuzz::start_board(input);
  pq::J2sContext context;
  Configuration loaded;
  fuzz::require(loaded.load(context.get(), input.line()) == 0, "every document can be loaded");
  fuzz::require(loaded.load(context.get(), input.line()) == 0, "every document can be loaded");

  const std::string text = loaded.text(context.get());
  Configuration again;
  again.load(context.get(), text);
  fuzz::require(again.text(context.get()) == text, "a saved document loads unchanged");

  const std::string before = loaded.bytes();
  const pq::JsonPtr question = pq::parse_json(input.line());
  loaded.query(context.get(), question.get());
  const pq::TextPtr answer(cJSON_PrintUnformatted(question.get()));
  fuzz::require(loaded.bytes() == before, "a query changes nothing");
  return 0;
}
