// The one way in which pqctl changes what a board has stored: at most one write for each section,
// in an order that leaves the screen right, each read back.
#ifndef PQCTL_WRITE_PLAN_H_
#define PQCTL_WRITE_PLAN_H_

#include <optional>
#include <string>
#include <vector>

#include "pqclient/json.h"
#include "pqclient/target.h"
#include "session.h"

struct PlannedWrite {
  pqclient::Target place;    // what is sent: all of a section, or only a part of it
  pqclient::JsonPtr before;  // the whole section as the board has it
  pqclient::JsonPtr asked;   // the whole section as it shall be, checked
  bool is_refresh = false;   // nobody asked for it: the same once more, for the sake of the screen
};

// Only the part that differs is sent. Nothing when there is no difference.
std::optional<PlannedWrite> plan_difference(const pqclient::Target& section,
                                            pqclient::JsonPtr before, pqclient::JsonPtr asked);

enum class Filing { kAsChange, kAsUndo, kNot };

struct WriteOptions {
  bool is_dry_run = false;  // prints the operations, sends none
  bool reads_back = true;
  bool heeds_interrupt = true;           // false: Ctrl-C does not keep it from being finished
  Filing filing = Filing::kAsChange;     // how the history has it
  std::optional<int>* number = nullptr;  // set to the number in the history before anything is sent
  // What helps when only a part was written. That the same command goes on, is not for every one to
  // say: it would take a step or a gain twice.
  const char* remedy = "; pqctl undo takes it back";
};

// Sorts the writes, adds csc after gamma where its gains would be lost, notes in the history what
// was there before, writes, reads back and reports to standard output.
// Throws Error kMismatch when the board has stored something else, kInput when the board is
// read-only. Trouble and Ctrl-C on the way come after a report that says how far it came.
void write_all(Session& session, std::vector<PlannedWrite> writes, const WriteOptions& options);

#endif  // PQCTL_WRITE_PLAN_H_
