#include <array>
#include <cstdint>
#include <iostream>
#include <string>

#include "commands.h"
#include "pqclient/change.h"
#include "pqclient/error.h"
#include "pqclient/target.h"

namespace {

using pqclient::TuningClient;

bool is_dci_on(TuningClient& client) {
  const auto target = pqclient::parse_target("dci/dciEnable");
  const pqclient::Answer answer = client.query_pq(target.section_pointer());
  const cJSON* value = answer.value != nullptr ? target.find_in(*answer.value) : nullptr;
  if (value == nullptr || cJSON_IsNumber(value) == 0) {
    throw pqclient::Error(pqclient::ErrorKind::kBadAnswer, "the answer holds no dci/dciEnable");
  }
  return value->valueint != 0;
}

void turn_dci_on(TuningClient& client) {
  const pqclient::JsonPtr on(cJSON_CreateNumber(1));
  pqclient::store(client, pqclient::Document::kPq, pqclient::parse_target("dci/dciEnable"), *on);
}

}  // namespace

void show_pattern(const GlobalOptions& options, const std::array<std::uint8_t, 3>& colour) {
  const auto [red, green, blue] = colour;
  options.client().show_pattern(red, green, blue);
}

// Entering twice would make the board forget that DCI was on, and both look alike from here.
void enter_pattern_mode(const GlobalOptions& options, bool force) {
  TuningClient client = options.client();
  if (!force && !is_dci_on(client)) {
    std::cerr << "note: DCI is off already, nothing sent: entering again would lose the state that "
                 "leaving restores (--force sends it all the same)\n";
    return;
  }
  client.pattern_mode(true);
}

// Leaving without having entered turns DCI off, which nobody wants who closes a test colour.
void leave_pattern_mode(const GlobalOptions& options) {
  TuningClient client = options.client();
  const bool was_on = is_dci_on(client);
  client.pattern_mode(false);
  if (is_dci_on(client)) return;
  if (was_on) {
    turn_dci_on(client);
    std::cerr << "note: pattern mode was not on; DCI is on again\n";
  } else {
    std::cerr << "note: DCI is off. If it should be on: pqctl set dci/dciEnable 1\n";
  }
}
