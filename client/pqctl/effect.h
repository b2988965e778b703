// When a setting is stored but cannot be seen.
#ifndef PQCTL_EFFECT_H_
#define PQCTL_EFFECT_H_

#include <iosfwd>

#include "pqclient/target.h"

// A line that says why the PQ value `target` does nothing on the screen; nothing when it does.
// section_value: the section as the board has stored it.
void print_effect_note(std::ostream& out, const pqclient::Target& target,
                       const cJSON& section_value);

#endif  // PQCTL_EFFECT_H_
