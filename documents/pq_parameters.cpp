#include "documents/pq_parameters.h"

#include <utility>

#include "j2s/shallow_tree.h"

namespace pq {
namespace {

constexpr char kMember[] = "pq_tuning_param";

}  // namespace

JsonPtr make_tree(j2s_ctx* context, const char* structure, const void* values) {
  const AllocationWatch memory;
  JsonPtr tree(j2s_struct_to_printable(context, structure, values, true));
  memory.throw_if_failed();
  return tree;
}

JsonPtr take_pq_parameters(StoredDocument& stored) {
  const JsonPtr document = stored.parse();
  stored.release_text();
  if (!document) return nullptr;
  JsonPtr parameters(cJSON_DetachItemFromObject(document.get(), kMember));
  if (!j2s::expand(parameters.get())) {
    stored.mark_unknown();
    return nullptr;
  }
  if (!cJSON_IsObject(parameters.get())) stored.mark_damaged("it has no object pq_tuning_param");
  return parameters;
}

// The whole configuration record also has the AI parameters, which this document leaves out.
// Converting the one half gives the same document without building the other, far larger one.
TextPtr print_pq_document(j2s_ctx* context, const pq_tuning_param& values) {
  const JsonPtr document(cJSON_CreateObject());
  if (!document) throw std::bad_alloc();
  add_to_object(document.get(), kMember, make_tree(context, kMember, &values));
  return print_json(document.get());
}

}  // namespace pq
