// The board's stored state, as far as requests change it.
#ifndef TESTS_FAULTS_STORED_H_
#define TESTS_FAULTS_STORED_H_

#include <string>

namespace faults {

// The texts of the two documents; empty if a document is missing.
struct Stored {
  std::string pq;
  std::string aipq;
  bool operator==(const Stored&) const = default;
};

// Documents with every section and every kind of member, but few numbers.
Stored small_documents();

// Documents exactly as the daemon creates them.
Stored whole_documents();

Stored stored();

// Puts the documents in place and removes side files of earlier saves.
void store(const Stored& documents);

// True if a save has left a file next to a document.
bool side_file_left();

void write_file(const std::string& path, const std::string& content);

}  // namespace faults

#endif  // TESTS_FAULTS_STORED_H_
