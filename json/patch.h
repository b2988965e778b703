// JSON Patch (RFC 6902) in front of the patch library: the same results, without the requests that
// would crash it, blow up memory or the stack, or leave a half-changed tree that is taken for
// whole.
#ifndef JSON_PATCH_H_
#define JSON_PATCH_H_

#include <string_view>

#include "json/tree.h"

namespace pq {

// Applies a patch, a JSON array of operations, to a document.
// patch: may be null or something else, then it fails; used up.
// document: may be shallow (j2s/shallow_tree.h); what the patch reaches is built. May be null, then
// the patch fails. On success it holds the changed document; it may
// have become something else than an object, or nothing that can be printed (a removed root). On
// failure it is left half-changed, for the caller to throw away.
// Returns 0 or the patch library's status of the operation that failed: 2 for one without a path,
// 4 for a move or copy whose "from" is no text, 8 for more than 1,000 operations, for a document
// that has grown past 1,000,000 items, 8 MiB of text or a depth of 256, or when the operations
// together take too long, others as the library numbers them.
// Throws std::bad_alloc.
int apply_patch(JsonPtr& document, JsonPtr patch);

// The same for a patch's text.
inline int apply_patch(JsonPtr& document, std::string_view patch_text) {
  return apply_patch(document, parse_json(patch_text));
}

}  // namespace pq

#endif  // JSON_PATCH_H_
