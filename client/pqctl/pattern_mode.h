// Pattern mode as a session that ends, whatever happens in between.
#ifndef PQCTL_PATTERN_MODE_H_
#define PQCTL_PATTERN_MODE_H_

#include "session.h"
#include "test_colour.h"

// Throws Error kBadAnswer when the board has no such switch.
bool is_dci_on(Session& session);
void switch_dci(Session& session, bool on);

// Entering switches DCI off in the stored document, leaving closes the test colour and brings back
// what the board has saved. The board saves but one state, and forgets it when it is entered twice:
// so this one does not enter where DCI is off, and restores the switch by itself where leaving
// makes it something else than it was.
class PatternMode {
 public:
  explicit PatternMode(Session& session) : session_(session) {}
  // Leaves, if that has not been done. Says on standard error when it cannot.
  ~PatternMode();
  PatternMode(const PatternMode&) = delete;
  PatternMode& operator=(const PatternMode&) = delete;

  void enter();

  // Returns when the board has acknowledged, after 2 seconds.
  void show(const TestColour& colour);

  void leave();

  // From now on it is somebody else's to leave.
  void keep() { is_active_ = false; }

 private:
  Session& session_;
  bool dci_was_on_ = false;
  bool is_active_ = false;
};

#endif  // PQCTL_PATTERN_MODE_H_
