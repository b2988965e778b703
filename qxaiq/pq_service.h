// The picture-quality service: changes and queries of the two documents.
//
// body, length: the request's text with its outer brackets (see pq_request.h), not terminated; read
// during the call only. All run on the receive thread of the client that asked; several may run at
// once. A request that makes no sense changes nothing.
#ifndef QXAIQ_PQ_SERVICE_H_
#define QXAIQ_PQ_SERVICE_H_

#include <cstdint>

// Applies the request's operation to the PQ document and shows the changed section on the display,
// which takes about 2 seconds.
// Returns 0 when the document was saved, whatever the display made of it; else the non-zero status
// of the patch or the conversion, or the negative one of the save: then the display was not
// touched.
int updatePQ(char* body, uint32_t length);

// Answers with the request itself, its "platform" set to the board's and the values of the section
// that its path names appended as "value". The caller frees the text.
// Returns null when the path names no section.
char* getPQ(char* body, uint32_t length);

// Applies the request's operation to the AIPQ document and tells the display service which table
// changed. Returns 0, whatever happened.
int updateAIPQ(char* body, uint32_t length);

// As getPQ, with the table of the AIPQ document; a path that names neither table gets the request
// back without "value". Returns null only when nothing could be parsed.
char* getAIPQ(char* body, uint32_t length);

#endif  // QXAIQ_PQ_SERVICE_H_
