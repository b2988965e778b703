// How large a document may be.
#ifndef JSON_LIMITS_H_
#define JSON_LIMITS_H_

#include <cstddef>

namespace pq {

// Bytes of a document's text, far above any real one (an AIPQ document has 0.7 MB). Longer texts
// are neither read nor collected.
inline constexpr size_t kMaxDocumentSize = size_t{8} * 1024 * 1024;

}  // namespace pq

#endif  // JSON_LIMITS_H_
