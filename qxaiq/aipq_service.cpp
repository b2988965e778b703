#include "qxaiq/aipq_service.h"

#include <array>
#include <mutex>
#include <utility>

#include "base/log.h"
#include "documents/document_file.h"
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
// document as it was; it is written anew all the same, which tools use to have it reformatted.
void change_document(JsonPtr patch) {
  const std::lock_guard lock(document_mutex);
  TextPtr stored = read_document_text(kAipqDocument);
  JsonPtr document = stored ? parse_shallow(stored.get()) : nullptr;
  const int status = apply_patch(document, std::move(patch));
  log_debug()("updateAIPQ ApplyPatches ret %d ", status);
  if (!stored) return;
  if (status != 0) document = parse_shallow(stored.get());
  stored.reset();  // a document is large, and its printed text comes on top

  // A patch can make a tree that prints as nothing, which is not saved. What does print can be read
  // again: no patched tree nests deeper than the parser goes.
  const int saved = save_document(kAipqDocument, print_json(document.get()).get());
  log_debug()("updateAIPQ j2s_save_file ret %d ", saved);
}

}  // namespace
}  // namespace pq

int updateAIPQ(char* body, uint32_t length) {
  pq::PqRequest request({body, length});
  request.check_platform();
  pq::change_document(request.take_patch());
  if (const pq::Table* table = pq::find_table(request)) pq::bump(table->counter);
  return 0;
}

char* getAIPQ(char* body, uint32_t length) {
  pq::PqRequest request({body, length});
  request.put_platform();
  if (const pq::Table* table = pq::find_table(request)) {
    pq::JsonPtr document;
    {
      const std::lock_guard lock(pq::document_mutex);
      document = pq::read_document(pq::kAipqDocument);
    }
    pq::JsonPtr values(cJSON_DetachItemFromObjectCaseSensitive(document.get(), table->name));
    if (values) pq::add_to_object(request.operation(), "value", std::move(values));
  }
  return pq::print_json(request.operation()).release();
}
