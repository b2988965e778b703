// The floors: for each operation the fewest calls of the JSON library that give the same bytes.
// The document is read from disk; nothing is mapped, checked, logged or saved.
#ifndef BENCH_FLOORS_H_
#define BENCH_FLOORS_H_

#include <string>

#include "json/tree.h"

namespace bench {

inline constexpr int kPlatformNumber = 1;  // of qxt200, see documents.cpp

// One request and the document that it is made of.
struct Task {
  const char* document;
  std::string request;
  std::string section;  // that a query asks for; empty for a change, a "replace"
  bool in_parameters;   // all paths begin in the document's "pq_tuning_param"
};

// Parses the request and the document, moves the section into the request, prints it.
pq::TextPtr floor_of_query(const Task& task);

// Parses the request and the document, replaces the value, prints the document.
pq::TextPtr floor_of_change(const Task& task);

}  // namespace bench

#endif  // BENCH_FLOORS_H_
