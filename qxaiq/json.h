// Owners of cJSON trees and j2s contexts.
#ifndef QXAIQ_JSON_H_
#define QXAIQ_JSON_H_

#include <cjson/cJSON.h>

#include <memory>
#include <string_view>

#include "common/owner.h"
#include "j2s/j2s.h"

namespace pq {

using JsonPtr = std::unique_ptr<cJSON, Call<cJSON_Delete>>;

// The tree of a JSON text, which need not be terminated and may go on after its first value; null
// when it is none. Every text is parsed through here: the parser notes where it failed in a
// variable of the whole process, so two threads take turns.
JsonPtr parse_json(std::string_view text);

// Adds `item` to `object` under `key`. An item that can't be added is freed.
inline bool add_to_object(cJSON* object, const char* key, JsonPtr item) {
  if (!cJSON_AddItemToObject(object, key, item.get())) return false;
  (void)item.release();  // the object owns it now
  return true;
}

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

#endif  // QXAIQ_JSON_H_
