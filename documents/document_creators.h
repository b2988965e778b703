// The two documents as they are when the board starts for the first time.
#ifndef DOCUMENTS_DOCUMENT_CREATORS_H_
#define DOCUMENTS_DOCUMENT_CREATORS_H_

// Writes the PQ document from what the board's base-parameter store holds; what the store does not
// have is zero. Returns 0; how the save went is only logged.
int getJsonFromBaseparameter(char* path);

// Writes the AIPQ document: twelve scenes with the same built-in defaults.
// Returns the number of bytes written, or a negative value.
int createDefaultAIPQJson(char* path);

#endif  // DOCUMENTS_DOCUMENT_CREATORS_H_
