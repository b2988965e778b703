// Changed values as a person reads them: a line for each, the entries of a table together.
#ifndef PQCTL_DIFFERENCE_TEXT_H_
#define PQCTL_DIFFERENCE_TEXT_H_

#include <span>
#include <string>
#include <vector>

#include "pqclient/change.h"

using ChangedValues = std::span<const pqclient::ChangedValue>;

// What belongs on one line: a value by itself, or more than a few entries of one table.
std::vector<ChangedValues> lines_of(ChangedValues changes);

// Of a line that is not a single value: "812 entries from 0 to 811, by -540 to +12".
std::string describe_entries(ChangedValues entries);

// As JSON, "nothing" where there is no value.
std::string value_text(const cJSON* value);

#endif  // PQCTL_DIFFERENCE_TEXT_H_
