// The PQ parameters in memory, between the document and the display.
#ifndef DOCUMENTS_PQ_PARAMETERS_H_
#define DOCUMENTS_PQ_PARAMETERS_H_

#include <cstdlib>

#include "documents/stored_document.h"
#include "j2s/pq_schema.h"
#include "json/tree.h"

namespace pq {

// One record of PQ parameters, zero at first, that owns the texts loaded into it.
// It must never hold the constant texts that the bootstrap documents are made from.
struct PqParameters {
  pq_tuning_param values{};

  PqParameters() = default;
  ~PqParameters() {
    for (char* text : {values.csc.name, values.csc.cscMode, values.dci.name, values.acm.name,
                       values.gamma.name, values.sharp.name}) {
      std::free(text);
    }
  }
  PqParameters(const PqParameters&) = delete;
  PqParameters& operator=(const PqParameters&) = delete;

  // Loads what fits of a "pq_tuning_param" object; what it lacks keeps its value. `item` may be
  // null: then nothing is loaded. Returns the result of j2s_json_to_struct. Throws std::bad_alloc.
  int load(j2s_ctx* context, cJSON* item) {
    const AllocationWatch memory;
    const int result = j2s_json_to_struct(context, item, "pq_tuning_param", &values);
    memory.throw_if_failed();
    return result;
  }
};

// Lives on a receive thread's stack, which has as little as 1,008 KiB on the board.
static_assert(sizeof(PqParameters) < 65'536);

// One structure as a tree with all its members, by its name in the schema; for printing only.
// Throws std::bad_alloc: with too little memory the mapping would leave members out.
JsonPtr make_tree(j2s_ctx* context, const char* structure, const void* values);

// The "pq_tuning_param" object of the PQ document, taken out of it: a patch of its root changes the
// item's name and place. Its members are built. Null unless the document is whole; one without that
// object is marked as damaged. Throws nothing.
JsonPtr take_pq_parameters(StoredDocument& stored);

// The PQ document of these parameters: an object with the one member "pq_tuning_param".
// Throws std::bad_alloc.
TextPtr print_pq_document(j2s_ctx* context, const pq_tuning_param& values);

}  // namespace pq

#endif  // DOCUMENTS_PQ_PARAMETERS_H_
