// The two documents by name.
#ifndef DOCUMENTS_DOCUMENT_H_
#define DOCUMENTS_DOCUMENT_H_

namespace pq {

enum class Document { kPq, kAipq };

}  // namespace pq

#endif  // DOCUMENTS_DOCUMENT_H_
