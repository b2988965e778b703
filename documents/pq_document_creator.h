// The PQ document of a board that has none yet.
#ifndef DOCUMENTS_PQ_DOCUMENT_CREATOR_H_
#define DOCUMENTS_PQ_DOCUMENT_CREATOR_H_

// Writes the PQ document from the board's base-parameter store; values that the store lacks are
// zero. Returns 0; the result of the save is only logged.
int getJsonFromBaseparameter(char* path);

#endif  // DOCUMENTS_PQ_DOCUMENT_CREATOR_H_
