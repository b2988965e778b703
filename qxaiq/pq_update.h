// Updates of the PQ document.
#ifndef QXAIQ_PQ_UPDATE_H_
#define QXAIQ_PQ_UPDATE_H_

#include <cstdint>

// Applies the request's operation to the PQ document and shows the changed section on the display,
// which takes about 2 seconds.
// body, length: the request's text with its outer brackets (pq_request.h), not terminated; read
// during the call only. Runs on the receive thread of the client; several may run at once.
// Returns 0 when the document was saved, even if the display refused; else the non-zero status of
// the patch or the conversion, or a negative value when the document could not be read or saved or
// memory ran out: then neither document nor display was touched. Throws nothing.
int updatePQ(char* body, uint32_t length);

#endif  // QXAIQ_PQ_UPDATE_H_
