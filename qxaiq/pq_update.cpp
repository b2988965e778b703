#include "qxaiq/pq_update.h"

#include <mutex>
#include <utility>

#include "base/log.h"
#include "documents/document_file.h"
#include "documents/pq_parameters.h"
#include "json/patch.h"
#include "qxaiq/change_counter.h"
#include "qxaiq/pq_display.h"
#include "qxaiq/pq_request.h"

namespace pq {
namespace {

void log_request(const PqRequest& request) {
  log_debug()("toolversion %s", or_empty(request.text_member("toolversion")));
  request.check_platform();
}

// The "pq_tuning_param" object of the stored document, taken out of it: a patch of its root changes
// the item's name and place, and it could not be found in the document again.
JsonPtr take_stored_parameters() {
  const JsonPtr document = read_document(kPqDocument);
  return JsonPtr(cJSON_DetachItemFromObject(document.get(), "pq_tuning_param"));
}

// Patches the stored parameters, brings them into the schema's form, and saves what comes out.
// Unknown keys are dropped, missing ones become zero. Returns 0, or what failed; then nothing has
// been written.
int change_document(JsonPtr patch, PqParameters& parameters) {
  const std::lock_guard lock(document_mutex);
  JsonPtr item = take_stored_parameters();
  const int patched = apply_patch(item, std::move(patch));
  log_debug()("ApplyPatches ret %d ", patched);
  if (patched != 0) return patched;

  J2sContext context;
  const int loaded = parameters.load(context.get(), item.get());
  log_debug()("j2s_json_to_struct ret %d ", loaded);
  if (loaded != 0) return loaded;

  const int saved = save_pq_document(kPqDocument, context.get(), parameters.values);
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
  pq::PqRequest request({body, length});
  pq::log_request(request);
  pq::PqParameters parameters;
  const int failed = pq::change_document(request.take_patch(), parameters);
  if (failed != 0) return failed;
  pq::show_change(request, parameters);
  return 0;
}
