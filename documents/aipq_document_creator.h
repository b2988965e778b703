// The AIPQ document of a board that has none yet.
#ifndef DOCUMENTS_AIPQ_DOCUMENT_CREATOR_H_
#define DOCUMENTS_AIPQ_DOCUMENT_CREATOR_H_

// Writes the AIPQ document: twelve scenes with the same built-in defaults.
// Returns the number of bytes written, or a negative value.
int createDefaultAIPQJson(char* path);

#endif  // DOCUMENTS_AIPQ_DOCUMENT_CREATOR_H_
