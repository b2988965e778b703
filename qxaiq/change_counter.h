// The counters by which the display service learns of a change: decimal numbers in properties.
#ifndef QXAIQ_CHANGE_COUNTER_H_
#define QXAIQ_CHANGE_COUNTER_H_

namespace pq {

inline constexpr char kTimelineCounter[] = "vendor.tvinput.qxpq.timeline";
inline constexpr char kAcmCounter[] = "vendor.tvinput.qxpq.update_aisd_acm_tab";
inline constexpr char kDciCounter[] = "vendor.tvinput.qxpq.update_aisd_dci_tab";

// Adds one to a counter; one that is missing or no number counts as 0. Safe from several threads.
void bump(const char* property);

}  // namespace pq

#endif  // QXAIQ_CHANGE_COUNTER_H_
