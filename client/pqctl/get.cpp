#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "command_syntax.h"
#include "commands.h"
#include "pqclient/error.h"
#include "pqclient/target.h"
#include "print_value.h"

namespace {

using pqclient::JsonPtr;
using pqclient::Target;

struct Arguments {
  std::vector<std::string> places;
};

JsonPtr value_at(Session& session, const Target& target) {
  const JsonPtr section = session.read_section(target);
  const cJSON* value = target.find_in(*section);
  if (value == nullptr) {
    throw pqclient::Error(pqclient::ErrorKind::kBadAnswer, "the answer has no " + target.text());
  }
  return pqclient::copy_json(*value);
}

// One place: just its value. Several: an object with the places as names.
void print_json_of(Session& session, const std::vector<Target>& targets) {
  if (targets.size() == 1) {
    std::cout << pqclient::print_json(*value_at(session, targets.front())) << '\n';
    return;
  }
  const JsonPtr values(cJSON_CreateObject());
  for (const Target& target : targets)
    pqclient::add_member(*values, target.text().c_str(), value_at(session, target));
  std::cout << pqclient::print_json(*values) << '\n';
}

void get(Session& session, const Arguments& arguments) {
  std::vector<Target> targets;
  for (const std::string& place : arguments.places)
    targets.push_back(pqclient::parse_target(place));
  if (session.options().json) {
    print_json_of(session, targets);
    return;
  }
  for (const Target& target : targets) {
    const JsonPtr value = value_at(session, target);
    if (targets.size() > 1) std::cout << session.palette().bold(target.text()) << '\n';
    print_value(std::cout, *value, target);
    if (targets.size() > 1 && &target != &targets.back()) std::cout << '\n';
  }
}

}  // namespace

void add_get(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax(
      add_command(
          grammar,
          {.name = "get",
           .group = kSee,
           .about = "Show stored values",
           .more =
               R"(Shows a section as a table, a single value bare. --json prints exact values; for several places,
an object with the places as names.

Examples:
  pqctl get csc
  pqctl get csc/cscBrightness
  pqctl get gamma/gammaTab_R --json
  pqctl get ai/dci/nature-sky
)"},
          [arguments](Session& session) { get(session, *arguments); }))
      .words("place", {"PLACE...", "SECTION[/MEMBER[/INDEX]], see pqctl --help"},
             arguments->places);
}
