// Finds stored values that are valid but probably not intended.
#ifndef PQCTL_PLAUSIBILITY_H_
#define PQCTL_PLAUSIBILITY_H_

#include <string>
#include <vector>

#include "pqclient/json.h"
#include "pqclient/target.h"

// One line for each: members that are missing or out of range, tables that are all zero or too
// short, a gamma table that falls, gains of zero. section_value: as the board has it; for the AIPQ
// document, all scenes.
std::vector<std::string> doubts_about(const pqclient::Target& section, const cJSON& section_value);

#endif  // PQCTL_PLAUSIBILITY_H_
