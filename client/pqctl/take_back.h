// Undoing changes of the history.
#ifndef PQCTL_TAKE_BACK_H_
#define PQCTL_TAKE_BACK_H_

#include "history.h"
#include "write_plan.h"

// Plans to restore every value that the entry changed; neighbouring values keep their current
// state. Notes values that were changed since.
std::vector<PlannedWrite> plan_take_back(Session& session, const HistoryEntry& entry);

#endif  // PQCTL_TAKE_BACK_H_
