#include <array>
#include <cstddef>
#include <mutex>

#include "qxaiq/document_file.h"
#include "qxaiq/log_source.h"
#include "qxaiq/pq_parameters.h"
#include "qxaiq/pq_request.h"
#include "qxaiq/pq_service.h"

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

// Zeros stand for what the document lacks, also when there is no document.
JsonPtr read_section(const Section& section) {
  J2sContext context;
  const JsonPtr document = read_pq_document();
  PqParameters parameters;
  parameters.load(context.get(), cJSON_GetObjectItem(document.get(), "pq_tuning_param"));

  auto* values = reinterpret_cast<char*>(&parameters.values) + section.offset;
  if (debug_enabled()) {
    const TextPtr text(j2s_dump_struct(context.get(), section.name, values));
    kProtocolLog.debug()("getPQ %s %s", section.name, or_empty(text.get()));
  }
  return make_tree(context.get(), section.name, values);
}

}  // namespace
}  // namespace pq

char* getPQ(char* body, uint32_t length) {
  pq::PqRequest request({body, length});
  pq::kProtocolLog.debug()("toolversion %s", pq::or_empty(request.text_member("toolversion")));
  request.put_platform();
  const pq::Section* section = pq::find_section(request);
  if (section == nullptr) return nullptr;
  // Appended: a request that came with a "value" has two in its answer, ours last.
  pq::add_to_object(request.operation(), "value", pq::read_section(*section));
  return pq::print_json(request.operation()).release();
}
