// The two documents that the operations work on, as the daemon itself creates them.
#ifndef BENCH_DOCUMENTS_H_
#define BENCH_DOCUMENTS_H_

#include <string>

namespace bench {

struct Documents {
  std::string pq, aipq;
};

// Has the daemon create both where it keeps them, on the board in process of a typical panel, and
// returns their texts.
Documents create_documents();

// The same document with four times the values: each of its outermost arrays holds its elements
// four times over.
std::string four_times_as_large(const std::string& document);

// Writes and reads a file whole; an empty text when there is none to read.
void write_file(const char* path, const std::string& text);
std::string read_file(const char* path);

}  // namespace bench

#endif  // BENCH_DOCUMENTS_H_
