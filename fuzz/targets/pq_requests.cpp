// Updates and queries of the PQ document.
#include "documents/names.h"
#include "fuzz/support/requests.h"
#include "qxaiq/pq_query.h"
#include "qxaiq/pq_update.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::run_requests(data, size, {pq::kPqDocument, updatePQ, getPQ});
  return 0;
}
