// Queries of the PQ document.
#ifndef QXAIQ_PQ_QUERY_H_
#define QXAIQ_PQ_QUERY_H_

#include <cstdint>

// Answers with the request itself, its "platform" set to the board's and the values of the section
// that its path names appended as "value".
// body, length: the request's text with its outer brackets (pq_request.h), not terminated; read
// during the call only. Runs on the receive thread of the client; several may run at once.
// Zeros stand for a document that is missing or damaged.
// Returns a text that the caller frees; null when the path names no section, and when a fault or
// lack of memory hides what is stored: a client would keep zeros that are not there. Throws
// nothing.
char* getPQ(char* body, uint32_t length);

#endif  // QXAIQ_PQ_QUERY_H_
