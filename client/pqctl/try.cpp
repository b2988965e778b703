#include <unistd.h>

#include <chrono>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "assignments.h"
#include "command_syntax.h"
#include "commands.h"
#include "history.h"
#include "interrupt.h"
#include "pqclient/error.h"
#include "write_plan.h"

namespace {

using std::chrono::milliseconds;

struct Arguments {
  std::vector<std::string> words;
  std::optional<double> seconds;
};

// The same places, with old and new values exchanged.
std::vector<PlannedWrite> reversed(const std::vector<PlannedWrite>& writes) {
  std::vector<PlannedWrite> back;
  back.reserve(writes.size());
  for (const PlannedWrite& write : writes)
    back.push_back(
        {write.place, pqclient::copy_json(*write.asked), pqclient::copy_json(*write.before)});
  return back;
}

enum class Decision { kTakeBack, kKeep };

Decision wait_for_decision(const Session& session, InterruptGuard& guard,
                           std::optional<milliseconds> time) {
  if (session.is_interactive() && isatty(STDIN_FILENO) != 0) {
    std::cerr << "k keeps it, any other key" << (time ? ", or waiting," : "") << " takes it back\n";
  }
  char key = '\0';
  const auto end = guard.wait(time, &key);
  const bool keeps = end == InterruptGuard::End::kKey && key == 'k';
  return keeps ? Decision::kKeep : Decision::kTakeBack;
}

struct Trial {
  std::vector<PlannedWrite> back;
  std::optional<int> number;  // in the history
};

void take_back(Session& session, Trial& trial) {
  try {
    write_all(session, std::move(trial.back),
              {.heeds_interrupt = false, .filing = Filing::kNot, .remedy = ""});
  } catch (const pqclient::Error& error) {
    throw pqclient::Error(
        error.kind(),
        std::string("the values could not be restored: ") + error.what() +
            (trial.number ? ". Once the board answers: pqctl undo " + std::to_string(*trial.number)
                          : ""));
  }
  if (trial.number) History(session.board()).mark_undone(*trial.number);
}

void try_out(Session& session, const Arguments& arguments) {
  std::optional<milliseconds> time;
  if (arguments.seconds) {
    time = std::chrono::ceil<milliseconds>(std::chrono::duration<double>(*arguments.seconds));
  } else if (isatty(STDIN_FILENO) == 0) {
    throw pqclient::Error(
        pqclient::ErrorKind::kInput,
        "standard input is not a terminal, so no key can be pressed: add --for SECONDS");
  }
  const auto assignments = parse_assignments(arguments.words);
  session.require_writable();
  InterruptGuard guard;  // from here on, every exit takes the change back
  auto writes = plan_assignments(session, assignments);
  Trial trial{.back = reversed(writes), .number = {}};
  Decision decision = Decision::kTakeBack;
  try {
    write_all(session, std::move(writes), {.number = &trial.number, .remedy = ""});
    decision = wait_for_decision(session, guard, time);
  } catch (...) {
    take_back(session, trial);
    throw;
  }
  if (decision == Decision::kTakeBack) take_back(session, trial);
  if (guard.is_interrupted()) throw Interrupted();
}

}  // namespace

void add_try(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax(
      add_command(grammar,
                  {.name = "try",
                   .group = kChange,
                   .about = "Show a change for a while, then take it back",
                   .more =
                       R"(Waits for a key or the time, then restores the old values; also on Ctrl-C.
PLACE and VALUE are as for pqctl set.

Examples:
  pqctl try csc/cscBrightness 300
  pqctl try --for 5 csc/cscRGain +20 csc/cscBGain -20
)"},
                  [arguments](Session& session) { try_out(session, *arguments); }))
      .words("assignment", kAssignmentShown, arguments->words)
      .number("--for", {"SECONDS", "Duration, instead of until a key is pressed"},
              arguments->seconds, kSecondsOfADay);
}
