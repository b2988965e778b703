// JSON Patch (RFC 6902) with the patch library's results, without the requests that would crash the
// library, take minutes or gigabytes, or leave a half-changed tree that is taken for whole.
//
// A patch is bounded in what it makes (limits.h) and in what it costs: in nanoseconds, as they were
// measured on one 2 GHz core. Not by a clock, so that a patch either fits or does not, whatever
// else the machine does meanwhile.
#ifndef JSON_PATCH_H_
#define JSON_PATCH_H_

#include <atomic>
#include <string_view>

#include "json/tree.h"

namespace pq {

// Statuses beyond the library's. They are in its numbering: 8 is a value it had no memory for.
inline constexpr int kPatchTooLarge = 8;
inline constexpr int kPatchStopped = -1;

// Applies a patch, a JSON array of operations, to a document.
// document: may be shallow (j2s/shallow_tree.h); what the patch reaches is built. May be null, then
// the patch fails. On success it holds the changed document; it may
// have become something else than an object, or nothing that can be printed (a removed root). On
// failure it is left half-changed, for the caller to throw away.
// patch: may be null or something else, then it fails; used up.
// stop: looked at before each operation; once it is true the patch fails with kPatchStopped.
// Returns 0, kPatchStopped, or the patch library's status of the operation that failed. Ours among
// these are 4 for a move or copy whose "from" is no text, and kPatchTooLarge for more than
// kMaxOperations, for a document that has grown past the limits, or when the operations together
// cost too much.
// Throws std::bad_alloc.
int apply_patch(cJSON* document, JsonPtr patch, const std::atomic<bool>& stop);

}  // namespace pq

#endif  // JSON_PATCH_H_
