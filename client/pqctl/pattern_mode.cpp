#include "pattern_mode.h"

#include <iostream>
#include <utility>

#include "pqclient/change.h"
#include "pqclient/error.h"
#include "pqclient/target.h"

bool is_dci_on(Session& session) {
  const auto target = pqclient::parse_target("dci/dciEnable");
  const pqclient::JsonPtr section = session.read_section(target);
  const cJSON* value = target.find_in(*section);
  if (value == nullptr || cJSON_IsNumber(value) == 0) {
    throw pqclient::Error(pqclient::ErrorKind::kBadAnswer, "the answer has no dci/dciEnable");
  }
  return value->valueint != 0;
}

void switch_dci(Session& session, bool on) {
  const pqclient::JsonPtr value(cJSON_CreateNumber(on ? 1 : 0));
  pqclient::store(session.client(), pqclient::parse_target("dci/dciEnable"), *value);
}

PatternMode::~PatternMode() {
  if (!is_active_) return;
  try {
    leave();
  } catch (const pqclient::Error& error) {
    std::cerr << "pqctl: the test colour could not be closed: " << error.what()
              << ". Once the board answers again: pqctl pattern-mode off\n";
  }
}

// Active from before the command: a failed command may still have reached the board.
void PatternMode::enter() {
  dci_was_on_ = is_dci_on(session_);
  is_active_ = true;
  if (dci_was_on_) session_.client().pattern_mode(true);
}

void PatternMode::show(const TestColour& colour) {
  session_.client().show_pattern(colour.red, colour.green, colour.blue);
}

void PatternMode::leave() {
  session_.client().pattern_mode(false);
  is_active_ = false;
  if (is_dci_on(session_) != dci_was_on_) switch_dci(session_, dci_was_on_);
  if (!dci_was_on_) {  // by the user, by a kept test colour, or by a pqctl that was killed
    session_.note(
        "DCI was off before, so it is left off. If a test colour caused it: pqctl pattern-mode "
        "off");
  }
}
