#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "command_syntax.h"
#include "commands.h"
#include "files.h"
#include "interrupt.h"
#include "pattern_mode.h"
#include "pqclient/error.h"
#include "progress.h"
#include "test_colour.h"

namespace {

using std::chrono::milliseconds;
using End = InterruptGuard::End;

struct Arguments {
  std::vector<std::string> colour;
  std::optional<double> seconds;
  bool keep = false;
  std::string sequence;
  double pause_seconds = 2;
  bool key = false;
};

milliseconds in_milliseconds(double seconds) {
  return std::chrono::ceil<milliseconds>(std::chrono::duration<double>(seconds));
}

void require_key(const char* instead) {
  if (isatty(STDIN_FILENO) != 0) return;
  throw pqclient::Error(
      pqclient::ErrorKind::kInput,
      "standard input is not a terminal, so no key can be pressed: add " + std::string(instead));
}

void show_colour(Session& session, const Arguments& arguments) {
  const TestColour colour = parse_colour(arguments.colour);
  const bool until_key = !arguments.keep && !arguments.seconds;
  if (until_key) require_key("--for SECONDS or --keep");
  session.require_writable();
  InterruptGuard guard;
  PatternMode mode(session);
  mode.enter();
  if (!guard.is_interrupted()) mode.show(colour);
  if (arguments.keep && !guard.is_interrupted()) {
    mode.keep();
    session.note("the colour stays until pqctl pattern-mode off");
    return;
  }
  if (until_key) {
    session.note(colour.name + " is shown; press any key to close it");
    guard.wait(std::nullopt);
  } else if (arguments.seconds) {
    guard.wait(in_milliseconds(*arguments.seconds));
  }
  mode.leave();
  if (guard.is_interrupted()) throw Interrupted{};
}

void show_sequence(Session& session, const Arguments& arguments) {
  const auto steps = arguments.sequence == "builtin"
                         ? builtin_sequence()
                         : parse_sequence(read_input(arguments.sequence));
  if (arguments.key) require_key("--pause SECONDS in place of --key");
  session.require_writable();
  InterruptGuard guard;
  PatternMode mode(session);
  mode.enter();
  {
    Progress progress(session);
    double done = 0;
    for (const auto& [colour, time] : steps) {
      if (guard.is_interrupted()) break;
      const auto total = static_cast<double>(steps.size());
      progress.show(done++ / total, colour.name + (arguments.key ? ", any key continues" : ""));
      mode.show(colour);
      std::optional<milliseconds> pause;
      if (!arguments.key) pause = time.value_or(in_milliseconds(arguments.pause_seconds));
      guard.wait(pause);
    }
  }
  mode.leave();
  if (guard.is_interrupted()) throw Interrupted{};
}

struct Mode {
  std::string name;
  bool force = false;
};

// Entering twice would make the board forget that DCI was on. The two cases look alike from here.
void enter_pattern_mode(Session& session, bool force) {
  if (!force && !is_dci_on(session)) {
    session.note(
        "DCI is already off, nothing sent: entering again would lose the state that "
        "leaving restores (--force sends it anyway)");
    return;
  }
  session.client().pattern_mode(true);
}

// Leaving without having entered may turn DCI off, which is never the intention here.
void leave_pattern_mode(Session& session) {
  const InterruptGuard guard;  // no interruption between the two steps
  const bool was_on = is_dci_on(session);
  session.client().pattern_mode(false);
  if (is_dci_on(session)) return;
  if (was_on) {
    switch_dci(session, true);
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
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax command(add_command(
      grammar,
      {.name = "pattern",
       .group = kLook,
       .about = "Fill the screen with test colours, until a key or Ctrl-C",
       .more =
           R"(DCI is off while a colour is shown and restored afterwards. The board takes 2 seconds for each
colour.

Examples:
  pqctl pattern red
  pqctl pattern grey 50% --for 10
  pqctl pattern '#ff8000'
  pqctl pattern 255 128 0 --keep; pqctl pattern-mode off
  pqctl pattern sequence builtin
)"},
      [arguments](Session& session) {
        if (!arguments->sequence.empty()) {
          show_sequence(session, *arguments);
        } else {
          show_colour(session, *arguments);
        }
      }));
  command
      .words("colour", {"COLOUR", "A name (red, grey 50%), #rrggbb, or three numbers, 0 to 255"},
             arguments->colour, Need::kOptional)
      .number("--for", {"S", "Seconds to show it, instead of until a key is pressed"},
              arguments->seconds, kSecondsOfADay)
      .flag("--keep", "Do not wait; pqctl pattern-mode off closes it", arguments->keep);
  command
      .command("sequence", "Show a sequence of colours",
               R"(A file has one line per step, a colour and optionally its duration: grey 50% 3s
A # followed by a blank starts a comment.

Examples:
  pqctl pattern sequence builtin --pause 1
  pqctl pattern sequence steps.txt --key
)")
      .word("file",
            {"FILE|builtin",
             "File, - for standard input, or builtin: greys, primaries and their mixtures"},
            arguments->sequence, Need::kRequired)
      .number("--pause", {"S", "Seconds that each colour stays (2)"}, arguments->pause_seconds,
              kSecondsOfADay)
      .flag("--key", "Continue when a key is pressed", arguments->key);
}

void add_pattern_mode(const Grammar& grammar) {
  const auto mode = std::make_shared<Mode>();
  CommandSyntax command(add_command(
      grammar,
      {.name = "pattern-mode",
       .group = kLook,
       .about = "Switch DCI off for test colours (on), or close them and restore DCI (off)",
       .more = R"(pqctl pattern does both by itself. Use this in scripts, and after pattern --keep.
)"},
      [mode](Session& session) { switch_pattern_mode(session, *mode); }));
  command.choice("mode", {"MODE", "on or off"}, {"on", "off"}, mode->name, Need::kRequired)
      .flag("--force", "Enter even if DCI is already off", mode->force);
}
