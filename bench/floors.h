// The floors: for each operation the fewest calls of the JSON library that give the same bytes.
// The document is read from disk; nothing is mapped, checked, logged or saved.
// document: its path.
#ifndef BENCH_FLOORS_H_
#define BENCH_FLOORS_H_

#include <string>

#include "json/tree.h"

namespace bench {

// Parses the request and the document, moves the section into the request, prints it.
// in_parameters: the section is inside the document's "pq_tuning_param".
pq::TextPtr floor_of_query(const char* document, const std::string& request, const char* section,
                           bool in_parameters);

// Parses the request (a "replace") and the document, replaces the value, prints the document.
pq::TextPtr floor_of_change(const char* document, const std::string& request, bool in_parameters);

}  // namespace bench

#endif  // BENCH_FLOORS_H_
