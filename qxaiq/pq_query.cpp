#include "qxaiq/pq_query.h"

#include <array>
#include <cstddef>
#include <mutex>

#include "base/log.h"
#include "documents/document_file.h"
#include "documents/pq_parameters.h"
#include "j2s/shallow_tree.h"
#include "qxaiq/pq_request.h"

namespace pq {
namespace {

struct Section {
  const char* name;  // in the path, and as structure
  size_t offset;     // in pq_tuning_param
};

// The first that the path names is answered.
constexpr std::array<Section, 5> kSections = {{{"csc", offsetof(pq_tuning_param, csc)},
                                               {"gamma", offsetof(pq_tuning_param, gamma)},
                                               {"dci", offsetof(pq_tuning_param, dci)},
                                               {"acm", offsetof(pq_tuning_param, acm)},
                                               {"sharp", offsetof(pq_tuning_param, sharp)}}};

// A log line is cut there anyway, but printf would go on to the text's end.
constexpr int kLongestLogText = static_cast<int>(std::tuple_size_v<LogText>);

const Section* find_section(const PqRequest& request) {
  for (const Section& section : kSections) {
    if (request.path_names(section.name)) return &section;
  }
  return nullptr;
}

JsonPtr read_pq_document() {
  const std::lock_guard lock(document_mutex);
  return read_document(kPqDocument);
}

// The section in the schema's form, for printing only. Zeros stand for what the document lacks,
// also when there is no document.
JsonPtr make_section(const Section& section, const cJSON* document) {
  cJSON* stored = cJSON_GetObjectItem(document, "pq_tuning_param");
  if (!j2s::expand(stored)) throw std::bad_alloc();
  J2sContext context;
  PqParameters parameters;
  auto* values = reinterpret_cast<char*>(&parameters.values) + section.offset;
  const MemoryWatch memory;
  j2s_json_to_struct(context.get(), cJSON_GetObjectItemCaseSensitive(stored, section.name),
                     section.name, values);
  memory.check();
  if (debug_enabled()) {
    const TextPtr text(j2s_dump_struct(context.get(), section.name, values));
    log_debug()("getPQ %s %.*s", section.name, kLongestLogText, or_empty(text.get()));
  }
  return make_tree(context.get(), section.name, values);
}

}  // namespace
}  // namespace pq

char* getPQ(char* body, uint32_t length) {
  pq::PqRequest request({body, length});
  pq::log_debug()("toolversion %s", pq::or_empty(request.text_member("toolversion")));
  request.put_platform();
  const pq::Section* section = pq::find_section(request);
  if (section == nullptr) return nullptr;
  const pq::JsonPtr document = pq::read_pq_document();
  // Appended: a request that came with a "value" has two in its answer, ours last.
  pq::add_to_object(request.operation(), "value", pq::make_section(*section, document.get()));
  return pq::print_json(request.operation()).release();
}
