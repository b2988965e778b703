// Updates and queries of the AIPQ document.
#include "documents/names.h"
#include "fuzz/support/requests.h"
#include "qxaiq/aipq_service.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::run_requests(data, size, {pq::kAipqDocument, updateAIPQ, getAIPQ});
  return 0;
}
