// What the board has stored, as far as requests change it.
#ifndef TESTS_FAULTS_STORED_H_
#define TESTS_FAULTS_STORED_H_

#include <string>

namespace faults {

// The texts of the two documents; empty for one that is not there.
struct Stored {
  std::string pq;
  std::string aipq;
  bool operator==(const Stored&) const = default;
};

// Documents with every section and every kind of member, in few numbers.
Stored small_documents();

// Documents as the daemon creates them.
Stored whole_documents();

Stored stored();

// Puts the documents in place; side files of earlier saves go.
void store(const Stored& documents);

// Whether a save has left something beside a document.
bool side_file_left();

void write_file(const std::string& path, const std::string& content);

}  // namespace faults

#endif  // TESTS_FAULTS_STORED_H_
