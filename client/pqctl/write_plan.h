// The only way in which pqctl changes what a board has stored: at most one write for each section,
// in an order that leaves the screen correct, each read back.
#ifndef PQCTL_WRITE_PLAN_H_
#define PQCTL_WRITE_PLAN_H_

#include <optional>
#include <string>
#include <vector>

#include "pqclient/json.h"
#include "pqclient/target.h"
#include "session.h"

struct PlannedWrite {
  pqclient::Target place;    // the part to send: a whole section, or a place in it
  pqclient::JsonPtr before;  // the whole section as the board has it
  pqclient::JsonPtr asked;   // the whole section with the new values, checked
  bool is_refresh = false;   // added by pqctl: written unchanged so that the screen is correct
};

// Plans to send only the part that differs. Empty if there is no difference.
std::optional<PlannedWrite> plan_difference(const pqclient::Target& section,
                                            pqclient::JsonPtr before, pqclient::JsonPtr asked);

enum class Filing { kAsChange, kAsUndo, kNot };

struct WriteOptions {
  bool is_dry_run = false;  // prints the operations, sends none
  bool reads_back = true;
  bool heeds_interrupt = true;           // false: Ctrl-C does not keep it from being completed
  Filing filing = Filing::kAsChange;     // how the history records it
  std::optional<int>* number = nullptr;  // set to the number in the history before anything is sent
  // Advice after a partial write. Only commands that may be repeated can advise repeating: a step
  // or
  // gain would be applied twice.
  const char* remedy = "; pqctl undo takes it back";
};

// Sorts the writes, adds csc after gamma if its gains would be lost, records the old values in the
// history, writes, reads back and reports to standard output.
// Throws Error kMismatch if the board stored a different value, kInput if the board is read-only. A
// failure or Ctrl-C first prints a report of the part that was written.
void write_all(Session& session, std::vector<PlannedWrite> writes, const WriteOptions& options);

#endif  // PQCTL_WRITE_PLAN_H_
