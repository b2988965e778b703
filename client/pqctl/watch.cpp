#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "command_syntax.h"
#include "commands.h"
#include "difference_text.h"
#include "interrupt.h"
#include "pqclient/change.h"
#include "pqclient/error.h"
#include "pqclient/target.h"

namespace {

using pqclient::ChangedValue;
using pqclient::JsonPtr;
using pqclient::Target;

struct Arguments {
  std::vector<std::string> places;
  double interval_seconds = 2;
};

struct Watched {
  Target target;
  JsonPtr last;  // the value at the place; null before the first query and if there is none
};

std::string clock_text() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 16> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%H:%M:%S", &local)};
}

void print_as_json(const ChangedValue& change) {
  // Places and times need no escaping.
  std::cout << R"({"time":")" << clock_text() << R"(","path":")" << change.path << R"(","was":)"
            << (change.before != nullptr ? pqclient::print_json(*change.before) : "null")
            << R"(,"now":)" << pqclient::print_json(*change.asked) << "}\n";
}

void print_changes(const Session& session, const Watched& watched, const cJSON& now) {
  const auto changes = pqclient::compare_states(watched.target, watched.last.get(), &now);
  if (session.options().json) {
    std::ranges::for_each(changes, print_as_json);
    return;
  }
  for (const ChangedValues line : lines_of(changes)) {
    const ChangedValue& first = line.front();
    std::cout << clock_text() << "  ";
    if (line.size() > 1) {
      std::cout << first.table << ": " << describe_entries(line) << '\n';
    } else {
      std::cout << first.path << ": was " << value_text(first.before) << ", now "
                << session.palette().bold(value_text(first.asked)) << '\n';
    }
  }
}

JsonPtr look_at(Session& session, const Target& target) {
  const JsonPtr section = session.read_section(target);
  const cJSON* value = target.find_in(*section);
  return value != nullptr ? pqclient::copy_json(*value) : nullptr;
}

void look_again(Session& session, Watched& watched) {
  JsonPtr now = look_at(session, watched.target);
  if (now != nullptr && watched.last != nullptr) print_changes(session, watched, *now);
  watched.last = std::move(now);
}

// True for failures that may pass, such as a server restart or a pulled cable.
bool is_passing(const pqclient::Error& error) {
  using pqclient::ErrorKind;
  return error.kind() == ErrorKind::kConnect || error.kind() == ErrorKind::kTimeout ||
         error.kind() == ErrorKind::kConnectionLost;
}

void watch(Session& session, const Arguments& arguments) {
  std::vector<Watched> all;
  for (const std::string& place : arguments.places)
    all.push_back({pqclient::parse_target(place), nullptr});
  for (Watched& watched : all)
    watched.last = look_at(session, watched.target);
  session.note("watching, Ctrl-C to stop");

  const std::chrono::milliseconds interval(static_cast<int>(arguments.interval_seconds * 1000));
  InterruptGuard guard;
  bool is_away = false;
  while (guard.wait(interval) != InterruptGuard::End::kInterrupt) {
    try {
      for (Watched& watched : all)
        look_again(session, watched);
      if (is_away) session.note("the board answers again");
      is_away = false;
    } catch (const pqclient::Error& error) {
      if (!is_passing(error)) throw;
      if (!is_away) session.note(std::string("still trying: ") + error.what());
      is_away = true;
    }
    if (!std::cout.flush()) return;  // the reader has gone
  }
}

}  // namespace

void add_watch(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax command(add_command(
      grammar,
      {.name = "watch",
       .group = kSee,
       .about = "Print changes as they happen",
       .more =
           R"(Sees all changes, by any tool, within the interval. Ctrl-C ends it with status 0; it waits for a
board that goes away for a while. With --json each change is one line.

Examples:
  pqctl watch csc
  pqctl watch csc/cscMode dci/dciEnable --interval 0.5
)"},
      [arguments](Session& session) { watch(session, *arguments); }));
  command.words("places", {"PLACE...", "Sections or members"}, arguments->places)
      .number("--interval", {"S", "Seconds between queries (2)"}, arguments->interval_seconds,
              {0.1, 3600});
}
