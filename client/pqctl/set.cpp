#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "commands.h"
#include "effect.h"
#include "pqclient/change.h"
#include "pqclient/check.h"
#include "pqclient/error.h"
#include "report_change.h"

namespace {

using pqclient::Target;

struct Arguments {
  std::string place;
  std::string value;
};

void set(Session& session, const Arguments& arguments) {
  const Target target = pqclient::parse_target(arguments.place);
  const pqclient::JsonPtr asked = pqclient::parse_value(target, arguments.value);
  session.require_writable();
  const pqclient::JsonPtr before = session.read_section(target);
  const cJSON* old = target.find_in(*before);
  if (old == nullptr) {
    throw pqclient::Error(pqclient::ErrorKind::kBadAnswer,
                          "the board's document has no " + target.text() + " to change");
  }
  const pqclient::Answer after = pqclient::store(session.client(), target, *asked);
  const cJSON* stored = after.value != nullptr ? target.find_in(*after.value) : nullptr;

  ChangeReport report(session.options().json);
  report.add(target.text(), old, *asked, stored);
  report.print(std::cout);
  if (after.value != nullptr) print_effect_note(std::cerr, target, *after.value);
  report.throw_unless_stored();
}

}  // namespace

void add_set(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command =
      add_command(grammar,
                  {.name = "set",
                   .group = kChange,
                   .about = "Change a value, read it back, and show what was and what is stored",
                   .more = ""},
                  [arguments](Session& session) { set(session, *arguments); });
  command.add_option("place", arguments->place, "SECTION/MEMBER[/INDEX]")
      ->option_text("PLACE")
      ->required();
  command
      .add_option("value", arguments->value,
                  "Number or text; for a table all entries, with commas between them")
      ->option_text("VALUE")
      ->required();
}
