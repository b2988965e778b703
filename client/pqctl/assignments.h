// The assignments that `set` and `try` take from the command line.
#ifndef PQCTL_ASSIGNMENTS_H_
#define PQCTL_ASSIGNMENTS_H_

#include <string>
#include <vector>

#include "command_syntax.h"
#include "pqclient/check.h"
#include "write_plan.h"

inline constexpr Shown kAssignmentShown = {"PLACE VALUE ...",
                                           "Places to change, with their values"};

extern const char* const kAssignmentHelp;

// words: any number of "PLACE VALUE" or "PLACE=VALUE". Checks everything that can be checked
// without the board. Throws Error kInput.
std::vector<pqclient::Assignment> parse_assignments(const std::vector<std::string>& words);

// Queries the sections and plans one write for each, of the smallest part that contains all
// assignments. Values that the board already has are written again, because the screen may not show
// them.
std::vector<PlannedWrite> plan_assignments(Session& session,
                                           const std::vector<pqclient::Assignment>& assignments);

#endif  // PQCTL_ASSIGNMENTS_H_
