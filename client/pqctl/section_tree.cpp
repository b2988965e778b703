#include "section_tree.h"

#include <utility>

namespace {

using pqclient::Document;

constexpr const char* kAi = "ai";

}  // namespace

const cJSON* SectionTree::find(const pqclient::Target& section) const {
  const cJSON* document = tree_.get();
  if (section.document == Document::kAipq) document = pqclient::last_member(*document, kAi);
  return document != nullptr ? pqclient::last_member(*document, section.section->name) : nullptr;
}

void SectionTree::add(const pqclient::Target& section, pqclient::JsonPtr value) {
  cJSON* document = tree_.get();
  if (section.document == Document::kAipq) {
    cJSON* ai = cJSON_GetObjectItemCaseSensitive(document, kAi);
    if (ai == nullptr) {
      pqclient::add_member(*document, kAi, pqclient::JsonPtr(cJSON_CreateObject()));
      ai = cJSON_GetObjectItemCaseSensitive(document, kAi);
    }
    document = ai;
  }
  pqclient::add_member(*document, std::string(section.section->name).c_str(), std::move(value));
}

std::string tree_pointer(const pqclient::Target& target) {
  const bool is_ai = target.document == Document::kAipq;
  return (is_ai ? std::string("/") + kAi : std::string()) + target.pointer();
}
