// What `set` and `try` take from the command line.
#ifndef PQCTL_ASSIGNMENTS_H_
#define PQCTL_ASSIGNMENTS_H_

#include <string>
#include <vector>

#include "command_syntax.h"
#include "pqclient/check.h"
#include "write_plan.h"

inline constexpr Shown kAssignmentShown = {"PLACE VALUE ...", "What to change, and to what"};

extern const char* const kAssignmentHelp;

// words: "PLACE VALUE" or "PLACE=VALUE", as many as the user likes. Everything that can be checked
// without the board is. Throws Error kInput.
std::vector<pqclient::Assignment> parse_assignments(const std::vector<std::string>& words);

// Reads the sections concerned; one write each, of the smallest part that holds all assignments.
// Also values that the board has already are written again: they may not be on the screen.
std::vector<PlannedWrite> plan_assignments(Session& session,
                                           const std::vector<pqclient::Assignment>& assignments);

#endif  // PQCTL_ASSIGNMENTS_H_
