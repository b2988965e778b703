// Limits of a document. Clients and documents rely on these numbers: docs/protocol.md has
// them.
#ifndef JSON_LIMITS_H_
#define JSON_LIMITS_H_

#include <cstddef>

namespace pq {

// Bytes of a document's printed text, far above any real one (an AIPQ document has 0.7 MB). Longer
// texts are neither read, collected nor saved.
inline constexpr size_t kMaxDocumentSize = size_t{8} * 1024 * 1024;

// Values in a document or in a request: more than twice an AIPQ document's 56,244. Each takes 80 to
// 144 bytes of memory, and up to a microsecond to print.
inline constexpr size_t kMaxItems = 131'072;

// Levels of arrays and objects. Deeper trees overflow the stacks of the functions that walk them.
inline constexpr size_t kMaxDepth = 256;

// Operations in a patch.
inline constexpr int kMaxOperations = 1'000;

}  // namespace pq

#endif  // JSON_LIMITS_H_
