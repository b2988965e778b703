#include "qxaiq/pq_parameters.h"

namespace pq {

// The whole configuration record also has the AI parameters, which this document leaves out.
// Converting the one half gives the same document without building the other, far larger one.
JsonPtr make_pq_document(j2s_ctx* context, const pq_tuning_param& values) {
  JsonPtr document(cJSON_CreateObject());
  JsonPtr parameters(j2s_struct_to_json(context, "pq_tuning_param", &values));
  if (!document || !parameters ||
      !add_to_object(document.get(), "pq_tuning_param", std::move(parameters))) {
    return nullptr;
  }
  return document;
}

}  // namespace pq
