#include "qxaiq/pq_parameters.h"

namespace pq {

JsonPtr make_tree(j2s_ctx* context, const char* structure, const void* values) {
  const MemoryWatch memory;
  JsonPtr tree(j2s_struct_to_json(context, structure, values));
  memory.check();
  return tree;
}

// The whole configuration record also has the AI parameters, which this document leaves out.
// Converting the one half gives the same document without building the other, far larger one.
JsonPtr make_pq_document(j2s_ctx* context, const pq_tuning_param& values) {
  JsonPtr document(cJSON_CreateObject());
  if (!document) throw std::bad_alloc();
  add_to_object(document.get(), "pq_tuning_param", make_tree(context, "pq_tuning_param", &values));
  return document;
}

}  // namespace pq
