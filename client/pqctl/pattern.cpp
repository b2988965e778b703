#include <CLI/CLI.hpp>
#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "commands.h"
#include "pqclient/change.h"
#include "pqclient/error.h"
#include "pqclient/target.h"

namespace {

using pqclient::TuningClient;

struct Colour {
  std::array<unsigned, 3> channels{};
};

struct Mode {
  std::string name;
  bool force = false;
};

bool is_dci_on(Session& session) {
  const auto target = pqclient::parse_target("dci/dciEnable");
  const pqclient::JsonPtr section = session.read_section(target);
  const cJSON* value = target.find_in(*section);
  if (cJSON_IsNumber(value) == 0) {
    throw pqclient::Error(pqclient::ErrorKind::kBadAnswer, "the answer holds no dci/dciEnable");
  }
  return value->valueint != 0;
}

void turn_dci_on(TuningClient& client) {
  const pqclient::JsonPtr on(cJSON_CreateNumber(1));
  pqclient::store(client, pqclient::parse_target("dci/dciEnable"), *on);
}

void show_pattern(Session& session, const Colour& colour) {
  session.require_writable();
  const auto [red, green, blue] = colour.channels;
  session.client().show_pattern(static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                                static_cast<std::uint8_t>(blue));
}

// Entering twice would make the board forget that DCI was on, and both look alike from here.
void enter_pattern_mode(Session& session, bool force) {
  if (!force && !is_dci_on(session)) {
    session.note(
        "DCI is off already, nothing sent: entering again would lose the state that "
        "leaving restores (--force sends it all the same)");
    return;
  }
  session.client().pattern_mode(true);
}

// Leaving without having entered turns DCI off, which nobody wants who closes a test colour.
void leave_pattern_mode(Session& session) {
  const bool was_on = is_dci_on(session);
  session.client().pattern_mode(false);
  if (is_dci_on(session)) return;
  if (was_on) {
    turn_dci_on(session.client());
    session.note("pattern mode was not on; DCI is on again");
  } else {
    session.note("DCI is off. If it should be on: pqctl set dci/dciEnable 1");
  }
}

void switch_pattern_mode(Session& session, const Mode& mode) {
  session.require_writable();
  if (mode.name == "on") {
    enter_pattern_mode(session, mode.force);
  } else {
    leave_pattern_mode(session);
  }
}

}  // namespace

void add_pattern(const Grammar& grammar) {
  const auto colour = std::make_shared<Colour>();
  CLI::App& command =
      add_command(grammar,
                  {.name = "pattern",
                   .group = kLook,
                   .about = "Fill the screen with a test colour",
                   .more = "Example:\n  pqctl pattern-mode on; pqctl pattern 255 0 0; pqctl "
                           "pattern-mode off\n"},
                  [colour](Session& session) { show_pattern(session, *colour); });
  constexpr std::array kNames = {"red", "green", "blue"};
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    command.add_option(kNames.at(i), colour->channels.at(i), "0 to 255")
        ->option_text("0..255")
        ->required()
        ->check(CLI::Range(0, 255));
  }
}

void add_pattern_mode(const Grammar& grammar) {
  const auto mode = std::make_shared<Mode>();
  CLI::App& command =
      add_command(grammar,
                  {.name = "pattern-mode",
                   .group = kLook,
                   .about = "on: switch DCI off for test colours; off: close them, DCI as it was",
                   .more = ""},
                  [mode](Session& session) { switch_pattern_mode(session, *mode); });
  command.add_option("mode", mode->name, "on or off")
      ->option_text("MODE")
      ->required()
      ->check(CLI::IsMember({"on", "off"}));
  command.add_flag("--force", mode->force, "Enter also when DCI is off already");
}
