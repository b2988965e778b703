// The counters by which the display service learns of a change: decimal numbers in properties.
#ifndef QXAIQ_CHANGE_COUNTER_H_
#define QXAIQ_CHANGE_COUNTER_H_

#include "documents/names.h"  // the counters' names

namespace pq {

// Adds one to a counter; one that is missing or no number counts as 0. Safe from several threads.
void bump(const char* property);

}  // namespace pq

#endif  // QXAIQ_CHANGE_COUNTER_H_
