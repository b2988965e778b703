// Values for a person to read.
#ifndef PQCTL_PRINT_VALUE_H_
#define PQCTL_PRINT_VALUE_H_

#include <iosfwd>

#include "pqclient/json.h"
#include "pqclient/target.h"

// A section (an object): single values as lines of name and value, then each table under its name.
// The scenes of an AIPQ section (an array of objects): each as a section, under its number.
// A table (an array): rows that begin with the index of their first entry.
// A single value: bare, a text without quotes.
// target: the place of the value.
void print_value(std::ostream& out, const cJSON& value, const pqclient::Target& target);

#endif  // PQCTL_PRINT_VALUE_H_
