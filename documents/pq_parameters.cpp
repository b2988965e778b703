#include "documents/pq_parameters.h"

#include "documents/document_file.h"

namespace pq {
namespace {

// The whole configuration record also has the AI parameters, which this document leaves out.
// Converting the one half gives the same document without building the other, far larger one.
TextPtr print_pq_document(j2s_ctx* context, const pq_tuning_param& values) {
  const JsonPtr document(cJSON_CreateObject());
  if (!document) throw std::bad_alloc();
  add_to_object(document.get(), "pq_tuning_param", make_tree(context, "pq_tuning_param", &values));
  return print_json(document.get());
}

}  // namespace

JsonPtr make_tree(j2s_ctx* context, const char* structure, const void* values) {
  const MemoryWatch memory;
  JsonPtr tree(j2s_struct_to_printable(context, structure, values, true));
  memory.check();
  return tree;
}

int save_pq_document(const char* path, j2s_ctx* context, const pq_tuning_param& values) {
  return save_document(path, print_pq_document(context, values).get());
}

}  // namespace pq
