// Sections of both documents in one tree, the form of patches and backups:
//
//   {"csc": {...}, "dci": {...}, ..., "ai": {"dci": [...], "acm": [...]}}
#ifndef PQCTL_SECTION_TREE_H_
#define PQCTL_SECTION_TREE_H_

#include <string>

#include "pqclient/json.h"
#include "pqclient/target.h"

class SectionTree {
 public:
  SectionTree() : tree_(cJSON_CreateObject()) {}
  // The tree must be an object.
  explicit SectionTree(pqclient::JsonPtr tree) : tree_(std::move(tree)) {}

  // Null if it is not there.
  [[nodiscard]] const cJSON* find(const pqclient::Target& section) const;

  void add(const pqclient::Target& section, pqclient::JsonPtr value);

  [[nodiscard]] const cJSON& json() const { return *tree_; }

 private:
  pqclient::JsonPtr tree_;
};

// JSON Pointer into such a tree: "/ai/dci/4/dciEnable".
std::string tree_pointer(const pqclient::Target& target);

#endif  // PQCTL_SECTION_TREE_H_
