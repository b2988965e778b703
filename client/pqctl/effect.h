// What a setting does on the screen, as far as it follows from other settings.
#ifndef PQCTL_EFFECT_H_
#define PQCTL_EFFECT_H_

#include <string>
#include <vector>

#include "pqclient/change.h"

// One line for each reason why something that was changed is stored but does nothing on the screen.
// section: the section that `changes` are in, as the board has it now, or will have it.
std::vector<std::string> effect_notes(const pqclient::Target& section,
                                      const std::vector<pqclient::ChangedValue>& changes,
                                      const cJSON& section_value);

// Gamma tables that are loaded now get other gains than 1 with the next write to csc.
bool has_gains(const cJSON& csc);

#endif  // PQCTL_EFFECT_H_
