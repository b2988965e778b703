// Owners of cJSON trees and j2s contexts.
#ifndef JSON_TREE_H_
#define JSON_TREE_H_

#include <cjson/cJSON.h>

#include <memory>
#include <new>
#include <string_view>

#include "base/memory.h"
#include "base/owner.h"
#include "j2s/j2s.h"
#include "j2s/json_owner.h"

namespace pq {

// The tree of a JSON text, which need not be terminated and may go on after its first value; null
// when it is none. Every text is parsed through here: the parser notes where it failed in a
// variable of the whole process, so two threads take turns. Throws std::bad_alloc.
JsonPtr parse_json(std::string_view text);

// The same tree at a tenth of the cost, for texts that j2s/json_cursor.h accepts; others are
// parsed.
JsonPtr parse_quickly(std::string_view text);

// The same for a terminated text, but without building what nobody looks into: where the text
// allows it, a shallow tree (j2s/shallow_tree.h).
JsonPtr parse_shallow(const char* text);

// A tree's indented text; null for a null tree and for one that can't be printed. The tree is good
// for nothing else afterwards: its arrays of integers have become texts, which print much faster.
// Throws std::bad_alloc.
TextPtr print_json(cJSON* tree);

// Adds `item` to `object` under `key`; frees it when there is no object. Throws std::bad_alloc.
void add_to_object(cJSON* object, const char* key, JsonPtr item);

// A j2s context for one conversion or two, set up for compact texts.
class J2sContext {
 public:
  J2sContext() {
    j2s_init(&context_);
    context_.pretty_print = 0;
  }
  ~J2sContext() { j2s_deinit(&context_); }
  J2sContext(const J2sContext&) = delete;
  J2sContext& operator=(const J2sContext&) = delete;

  j2s_ctx* get() { return &context_; }

 private:
  j2s_ctx context_{};
};

}  // namespace pq

#endif  // JSON_TREE_H_
