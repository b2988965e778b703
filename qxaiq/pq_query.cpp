#include "qxaiq/pq_query.h"

#include <array>
#include <cstddef>
#include <new>

#include "base/log.h"
#include "documents/document_transaction.h"
#include "documents/pq_parameters.h"
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
constexpr int kMaxLogText = static_cast<int>(std::tuple_size_v<LogText>);

const Section* find_section(const PqRequest& request) {
  for (const Section& section : kSections) {
    if (request.path_names(section.name)) return &section;
  }
  return nullptr;
}

// The section in the schema's form, for printing only. Members that `stored` lacks are zero; it may
// be null.
JsonPtr make_section(const Section& section, const cJSON* stored) {
  J2sContext context;
  PqParameters parameters;
  auto* values = reinterpret_cast<char*>(&parameters.values) + section.offset;
  const AllocationWatch memory;
  j2s_json_to_struct(context.get(), cJSON_GetObjectItemCaseSensitive(stored, section.name),
                     section.name, values);
  memory.throw_if_failed();
  if (debug_enabled()) {
    const TextPtr text(j2s_dump_struct(context.get(), section.name, values));
    log_debug()("getPQ %s %.*s", section.name, kMaxLogText, or_empty(text.get()));
  }
  return make_tree(context.get(), section.name, values);
}

// Null when the path names no section, or when it is not known what is stored.
TextPtr answer(PqRequest& request) {
  log_debug()("toolversion %s", or_empty(request.text_member("toolversion")));
  request.put_platform();
  const Section* section = find_section(request);
  if (section == nullptr) return nullptr;
  StoredDocument stored = read_for_query(Document::kPq);
  const JsonPtr parameters = take_pq_parameters(stored);
  if (stored.state() == DocumentState::kUnknown) return nullptr;
  // Appended: a request that came with a "value" has two in its answer, ours last.
  add_to_object(request.operation(), "value", make_section(*section, parameters.get()));
  return print_json(request.operation());
}

}  // namespace
}  // namespace pq

char* getPQ(char* body, uint32_t length) {
  try {
    pq::PqRequest request({body, length});
    return pq::answer(request).release();
  } catch (const std::bad_alloc&) {
    pq::log_error()("no memory for a query of the PQ document: it is not answered");
    return nullptr;
  }
}
