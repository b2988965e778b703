// Values as a person reads them.
#ifndef PQCTL_PRINT_VALUE_H_
#define PQCTL_PRINT_VALUE_H_

#include <iosfwd>

#include "pqclient/json.h"
#include "pqclient/schema.h"

// A section (an object): single values as lines of name and value, then each table under its name.
// A table (an array): rows that begin with the index of their first entry.
// A single value: bare, a text without quotes.
// member: whose value it is; null for a whole section.
void print_value(std::ostream& out, const cJSON& value, const pqclient::Section& section,
                 const pqclient::Member* member);

#endif  // PQCTL_PRINT_VALUE_H_
