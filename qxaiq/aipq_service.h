// Updates and queries of the AIPQ document.
//
// body, length: the request's text with its outer brackets (pq_request.h), not terminated; read
// during the call only. Both run on the receive thread of the client; several may run at once.
#ifndef QXAIQ_AIPQ_SERVICE_H_
#define QXAIQ_AIPQ_SERVICE_H_

#include <cstdint>

// Applies the request's operation to the AIPQ document and tells the display service which table
// changed. Returns 0, also when nothing could be changed. Throws nothing.
int updateAIPQ(char* body, uint32_t length);

// Answers with the request itself, its "platform" set to the board's and the table that its path
// names appended as "value"; a path that names neither table gets no "value".
// Returns a text that the caller frees; null when the request is not JSON, and when a fault or lack
// of memory hides what is stored. Throws nothing.
char* getAIPQ(char* body, uint32_t length);

#endif  // QXAIQ_AIPQ_SERVICE_H_
