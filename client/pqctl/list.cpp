#include <algorithm>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>

#include "command_syntax.h"
#include "commands.h"
#include "pqclient/check.h"
#include "pqclient/target.h"

namespace {

using pqclient::Member;
using pqclient::Target;

struct Arguments {
  std::string place;
};

void print_members(const Target& place) {
  std::size_t width = 0;
  for (const Member& member : place.section->members)
    width = std::max(width, member.name.size());
  std::string above = Target{place.document, place.section, place.scene, {}, {}}.text();
  if (place.document == pqclient::Document::kAipq && !place.scene) above += "/SCENE";
  for (const Member& member : place.section->members) {
    if (place.member != nullptr && place.member != &member) continue;
    std::cout << above << '/' << std::left << std::setw(static_cast<int>(width)) << member.name
              << std::right << "  " << pqclient::describe_values(member) << '\n';
  }
}

void list(const Arguments& arguments) {
  if (!arguments.place.empty()) {
    print_members(pqclient::parse_target(arguments.place));
    return;
  }
  for (const Target& section : pqclient::sections_in_writing_order())
    print_members(section);
  std::cout << "\nSCENE is a name or a number, 0 to 11:";
  for (std::size_t i = 0; i < pqclient::kScenes.size(); ++i)
    std::cout << (i % 4 == 0 ? "\n  " : "  ") << std::setw(2) << i << ' ' << std::left
              << std::setw(16) << pqclient::kScenes.at(i) << std::right;
  std::cout << '\n';
}

}  // namespace

void add_list(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax(add_command(grammar,
                            {.name = "list",
                             .group = kSee,
                             .about = "List all settings with their possible values",
                             .more = R"(Needs no board.

Examples:
  pqctl list
  pqctl list csc
)"},
                            [arguments](Session&) { list(*arguments); }))
      .word("place", {"PLACE", "Only this section or member"}, arguments->place, Need::kOptional);
}
