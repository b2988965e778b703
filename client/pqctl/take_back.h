// Taking back what the history knows.
#ifndef PQCTL_TAKE_BACK_H_
#define PQCTL_TAKE_BACK_H_

#include "history.h"
#include "write_plan.h"

// Gives every value that the entry changed what it had before; values next to them stay as they are
// by now. Says so when something has changed since.
std::vector<PlannedWrite> plan_take_back(Session& session, const HistoryEntry& entry);

#endif  // PQCTL_TAKE_BACK_H_
