// Changed values for a person to read: one line per value, the entries of a table together.
#ifndef PQCTL_DIFFERENCE_TEXT_H_
#define PQCTL_DIFFERENCE_TEXT_H_

#include <span>
#include <string>
#include <vector>

#include "pqclient/change.h"

using ChangedValues = std::span<const pqclient::ChangedValue>;

// Groups changes into lines: a single value, or more than a few entries of one table.
std::vector<ChangedValues> lines_of(ChangedValues changes);

// For a line of several entries: "812 entries from 0 to 811, by -540 to +12".
std::string describe_entries(ChangedValues entries);

// As JSON, or "nothing" if there is no value.
std::string value_text(const cJSON* value);

#endif  // PQCTL_DIFFERENCE_TEXT_H_
