// The documents that a board has, as its daemon created them, and the files they are in.
#ifndef FUZZ_SUPPORT_DOCUMENTS_H_
#define FUZZ_SUPPORT_DOCUMENTS_H_

#include <string>
#include <string_view>

namespace fuzz {

// Both documents, for the full and for the small tables. Once, at the start of the process.
void create_documents();

// Puts them in place, as the chosen tables make them, and removes all other files beside them.
void put_documents();

// A file's content; empty when there is none.
std::string read_file(const char* path);
void write_file(const char* path, std::string_view content);

// Puts what an input names in the place of what is at a path: 'f' a file, 'd' a folder, 'p' a pipe,
// 'l' a link to `elsewhere`, else nothing. False when there is nothing then.
bool put(const char* path, char kind, std::string_view content, const char* elsewhere);

// Fails unless both documents can be read, nothing but them is in their folder, and the PQ document
// is what the tables say: loading and saving it again would change nothing.
void require_sound_documents();

}  // namespace fuzz

#endif  // FUZZ_SUPPORT_DOCUMENTS_H_
