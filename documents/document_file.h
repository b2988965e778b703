// The two JSON documents on the board's disk: where they are, and how they are read and saved so
// that one is there, whole, whenever the power goes.
#ifndef DOCUMENTS_DOCUMENT_FILE_H_
#define DOCUMENTS_DOCUMENT_FILE_H_

#include <mutex>

#include "documents/names.h"
#include "json/tree.h"

namespace pq {

// Held from reading a document to saving it, so that no change is lost, and while one is read, so
// that nobody sees half a save. Never held across a wait, a send or the start of a program.
inline std::mutex document_mutex;

// A document's text, null when there is none to read. What a save that failed or was cut short has
// left in the side file counts, see restore_document.
// This and the following throw std::bad_alloc or std::system_error when reading fails for a reason
// that says nothing of what is stored: no memory, no descriptor, an error of the disk.
TextPtr read_document_text(const char* path);

// A document's tree, null when it can't be read or is no JSON. It may be shallow: j2s loads what is
// not built, and who looks into it calls j2s::expand.
JsonPtr read_document(const char* path);

// Replaces a document. Saving truncates the file before it writes, and being killed in between is
// how the service is normally stopped; so the text goes to a side file next to the document first.
// Returns the number of bytes written, or -1. When the side file can't be written the document is
// as it was; when the document itself can't, the side file stays for restore_document.
int save_document(const char* path, const char* text);

// Puts back what a save that failed or was cut short left in the side file, when the document can't
// be read any more. Never creates a missing document. Every reading and saving begins with it;
// start-up calls it too, before it looks for missing documents.
// Returns false when the document could not be put back: the side file is all there is then.
bool restore_document(const char* path);

}  // namespace pq

#endif  // DOCUMENTS_DOCUMENT_FILE_H_
