#include "documents/stored_document.h"

#include <new>

#include "base/log.h"

namespace pq {

JsonPtr StoredDocument::parse() {
  if (!text_) return nullptr;
  try {
    JsonPtr tree = parse_shallow(text_.get());
    if (!tree) mark_damaged("it is not JSON");
    return tree;
  } catch (const std::bad_alloc&) {
    mark_unknown();
    return nullptr;
  }
}

void StoredDocument::mark_unknown() {
  log_error()("cannot read %s: no memory", path_);
  state_ = DocumentState::kUnknown;
  release_text();
}

void StoredDocument::mark_damaged(const char* why) {
  log_error()("%s is damaged: %s", path_, why);
  state_ = DocumentState::kDamaged;
  release_text();
}

}  // namespace pq
