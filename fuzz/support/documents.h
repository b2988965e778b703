// A board's documents as the daemon creates them, and their files.
#ifndef FUZZ_SUPPORT_DOCUMENTS_H_
#define FUZZ_SUPPORT_DOCUMENTS_H_

#include <string>
#include <string_view>

namespace fuzz {

// Creates both documents, for the full and for the small tables. Called once, at the process's
// start.
void create_documents();

// Puts the documents for the selected tables in place, and removes all other files next to them.
void put_documents();

// A file's content; empty if there is none.
std::string read_file(const char* path);
void write_file(const char* path, std::string_view content);

// Replaces the file at a path by the kind that an input names: 'f' a file, 'd' a folder, 'p' a
// pipe, 'l' a link to `elsewhere`, otherwise nothing. Returns false if nothing is there afterwards.
bool put(const char* path, char kind, std::string_view content, const char* elsewhere);

// Fails unless both documents can be read, nothing else is in their folder, and the PQ document has
// the tables' form: loading and saving it again would change nothing.
void require_sound_documents();

}  // namespace fuzz

#endif  // FUZZ_SUPPORT_DOCUMENTS_H_
