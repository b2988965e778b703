// The two documents that the operations work on, as the daemon itself creates them.
#ifndef BENCH_DOCUMENTS_H_
#define BENCH_DOCUMENTS_H_

#include <string>

namespace bench {

struct Documents {
  std::string pq, aipq;
};

// Makes the daemon create both documents in their places, on the in-process board with a typical
// panel. Returns their texts.
Documents create_documents();

// The same document with four times the values: the elements of each outermost array are repeated
// four times.
std::string four_times_as_large(const std::string& document);

// Writes and reads whole files; reading gives an empty text if the file cannot be read.
void write_file(const char* path, const std::string& text);
std::string read_file(const char* path);

}  // namespace bench

#endif  // BENCH_DOCUMENTS_H_
