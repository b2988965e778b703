#include "qxaiq/aipq_service.h"

#include <array>
#include <new>
#include <utility>

#include "base/log.h"
#include "base/quit.h"
#include "documents/document_transaction.h"
#include "json/patch.h"
#include "qxaiq/change_counter.h"
#include "qxaiq/pq_request.h"

namespace pq {
namespace {

struct Table {
  const char* name;     // in the path, and in the document
  const char* counter;  // of its changes
};

// A path that names both is an ACM path.
constexpr std::array<Table, 2> kTables = {{{"acm", kAcmCounter}, {"dci", kDciCounter}}};

const Table* find_table(const PqRequest& request) {
  for (const Table& table : kTables) {
    if (request.path_names(table.name)) return &table;
  }
  return nullptr;
}

// Applies the patch to the stored document and saves what comes out. A patch that fails leaves the
// document as it was; it is written again all the same, which reformats it.
void change_document(JsonPtr patch) {
  DocumentTransaction transaction(Document::kAipq);
  StoredDocument& stored = transaction.stored();
  JsonPtr document = stored.parse();
  if (stored.state() == DocumentState::kUnknown) return;
  const int status = apply_patch(document.get(), std::move(patch), quit_requested);
  log_debug()("updateAIPQ ApplyPatches ret %d ", status);
  if (stored.state() != DocumentState::kWhole || status == kPatchStopped) return;
  if (status != 0) {
    document.reset();  // not both trees at once
    document = stored.parse();
  }
  stored.release_text();

  // A patch can make a tree that prints as nothing, which is not saved. Any other text can be read
  // again: no patched tree nests deeper than the parser goes.
  const int saved = transaction.save(print_json(document.get()).get());
  log_debug()("updateAIPQ j2s_save_file ret %d ", saved);
}

// Null when the request is not JSON, or when it is not known what is stored.
TextPtr answer(PqRequest& request) {
  request.put_platform();
  if (const Table* table = find_table(request)) {
    StoredDocument stored = read_for_query(Document::kAipq);
    const JsonPtr document = stored.parse();
    if (stored.state() == DocumentState::kUnknown) return nullptr;
    JsonPtr values(cJSON_DetachItemFromObject(document.get(), table->name));
    if (values) add_to_object(request.operation(), "value", std::move(values));
  }
  return print_json(request.operation());
}

void update(PqRequest& request) {
  request.check_platform();
  try {
    change_document(request.take_patch());
  } catch (const std::bad_alloc&) {
    log_error()("no memory for an update of the AIPQ document: nothing is saved");
  }
  // Also after a failure: the display service then reads the document again.
  if (const Table* table = find_table(request)) bump(table->counter);
}

}  // namespace
}  // namespace pq

int updateAIPQ(char* body, uint32_t length) {
  try {
    pq::PqRequest request({body, length});
    pq::update(request);
  } catch (const std::bad_alloc&) {
    pq::log_error()("no memory for an update of the AIPQ document: it is dropped");
  }
  return 0;
}

char* getAIPQ(char* body, uint32_t length) {
  try {
    pq::PqRequest request({body, length});
    return pq::answer(request).release();
  } catch (const std::bad_alloc&) {
    pq::log_error()("no memory for a query of the AIPQ document: it is not answered");
    return nullptr;
  }
}
