#include "qxaiq/pq_update.h"

#include <new>
#include <utility>

#include "base/log.h"
#include "base/quit.h"
#include "documents/document_transaction.h"
#include "documents/pq_parameters.h"
#include "json/patch.h"
#include "qxaiq/pq_display.h"
#include "qxaiq/pq_request.h"

namespace pq {
namespace {

constexpr int kFailed = -1;  // the document could not be read, or memory ran out

void log_request(const PqRequest& request) {
  log_debug()("toolversion %s", or_empty(request.text_member("toolversion")));
  request.check_platform();
}

// Patches the stored parameters, brings them into the schema's form, and saves what comes out.
// Unknown keys are dropped, missing ones become zero. Returns 0, or what failed; then nothing has
// been written.
int change_document(JsonPtr patch, PqParameters& parameters) {
  DocumentTransaction transaction(Document::kPq);
  JsonPtr item = take_pq_parameters(transaction.stored());
  if (transaction.stored().state() == DocumentState::kUnknown) return kFailed;
  const int patched = apply_patch(item.get(), std::move(patch), quit_requested);
  log_debug()("ApplyPatches ret %d ", patched);
  if (patched != 0) return patched;

  J2sContext context;
  const int loaded = parameters.load(context.get(), item.get());
  log_debug()("j2s_json_to_struct ret %d ", loaded);
  if (loaded != 0) return loaded;

  const int saved = transaction.save(print_pq_document(context.get(), parameters.values).get());
  return saved < 0 ? saved : 0;
}

// The first of these words that the path holds decides, whatever else it holds.
void show_change(const PqRequest& request, PqParameters& parameters) {
  if (request.path_names("csc")) {
    show_colour_space(parameters.values);
  } else if (request.path_names("dci") || request.path_names("acm") ||
             request.path_names("sharp")) {
    show_lut();
  } else if (request.path_names("gamma")) {
    show_gamma(parameters.values.gamma);
  }
}

}  // namespace
}  // namespace pq

int updatePQ(char* body, uint32_t length) {
  try {
    pq::PqRequest request({body, length});
    pq::log_request(request);
    pq::PqParameters parameters;
    const int failed = pq::change_document(request.take_patch(), parameters);
    if (failed != 0) return failed;
    pq::show_change(request, parameters);  // throws nothing: the display's faults are its own
    return 0;
  } catch (const std::bad_alloc&) {
    pq::log_error()("no memory for an update of the PQ document: it is dropped");
    return pq::kFailed;
  }
}
