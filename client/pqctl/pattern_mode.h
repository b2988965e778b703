// Pattern mode as a scope: it is always left again.
#ifndef PQCTL_PATTERN_MODE_H_
#define PQCTL_PATTERN_MODE_H_

#include "session.h"
#include "test_colour.h"

// Throws Error kBadAnswer if the board has no such switch.
bool is_dci_on(Session& session);
void switch_dci(Session& session, bool on);

// Entering switches DCI off in the stored document; leaving closes the test colour and restores the
// state that the board saved. The board saves only one state, and loses it if pattern mode is
// entered twice. So this class does not enter if DCI is already off, and corrects the switch itself
// if leaving does not restore it.
class PatternMode {
 public:
  explicit PatternMode(Session& session) : session_(session) {}
  // Leaves, unless that was done already. Reports a failure on standard error.
  ~PatternMode();
  PatternMode(const PatternMode&) = delete;
  PatternMode& operator=(const PatternMode&) = delete;

  void enter();

  // Returns once the board has acknowledged, after 2 seconds.
  void show(const TestColour& colour);

  void leave();

  // Leaves pattern mode on; a later command must leave it.
  void keep() { is_active_ = false; }

 private:
  Session& session_;
  bool dci_was_on_ = false;
  bool is_active_ = false;
};

#endif  // PQCTL_PATTERN_MODE_H_
