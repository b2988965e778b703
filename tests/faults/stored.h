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

// Lets a start settle what saves have left beside the documents. Returns false when something
// stays.
bool settle_side_files();

void write_file(const std::string& path, const std::string& content);

}  // namespace faults

#endif  // TESTS_FAULTS_STORED_H_
