// Reasons why a changed setting does not show on the screen, where other settings cause it.
#ifndef PQCTL_EFFECT_H_
#define PQCTL_EFFECT_H_

#include <string>
#include <vector>

#include "pqclient/change.h"

// One line for each reason why a changed value is stored but has no effect on the screen.
// section: the section that contains `changes`, as the board has it now or will have it.
std::vector<std::string> effect_notes(const pqclient::Target& section,
                                      const std::vector<pqclient::ChangedValue>& changes,
                                      const cJSON& section_value);

// True if the next write to csc would scale the gamma tables.
bool has_gains(const cJSON& csc);

#endif  // PQCTL_EFFECT_H_
