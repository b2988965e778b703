// Points in time as text.
#ifndef PQCTL_TIME_TEXT_H_
#define PQCTL_TIME_TEXT_H_

#include <chrono>
#include <string>

// As in RFC 3339, in UTC: "2026-11-21T07:30:00Z".
std::string utc_text(std::chrono::system_clock::time_point time);

// The same in this machine's time zone, for a person: "2026-11-21 08:30:00". Returns any text
// unchanged that utc_text() has not written.
std::string local_text(const std::string& utc);

#endif  // PQCTL_TIME_TEXT_H_
