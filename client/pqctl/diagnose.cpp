// Finds faults between this machine and a board: each step prints its result, and on failure a
// likely cause and a remedy.
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "command_syntax.h"
#include "commands.h"
#include "plausibility.h"
#include "pqclient/error.h"
#include "pqclient/target.h"

namespace {

using pqclient::Error;
using pqclient::ErrorKind;
using pqclient::JsonPtr;
using pqclient::Target;

struct Arguments {
  bool quick = false;
};

// The usual cause of a failure, and a remedy.
const char* remedy_of(ErrorKind kind) {
  switch (kind) {
    case ErrorKind::kConnect:
      return "The server is not running, listens on another port, or is out of reach. On the "
             "board: "
             "is qxaiq_tool_server among the processes (ps -A)? For a board on USB: adb forward "
             "tcp:5543 tcp:5543";
    case ErrorKind::kTimeout:
      return "Something accepts the connection and stays silent: a forwarded port without a "
             "server, "
             "or a server that is busy with another tool. Look at its log (logcat -s "
             "aiqtool), close other tools, or allow more time with --timeout";
    case ErrorKind::kConnectionLost:
      return "The other end closes the connection: adb does so if nothing listens on the board. "
             "Start "
             "the server there";
    case ErrorKind::kBadAnswer:
      return "Something other than the server answers on this port, or its document is damaged. "
             "Look at the log (logcat -s aiqtool); the server creates a deleted document again "
             "when "
             "it starts";
    default:
      return "See the text above";
  }
}

class Examination {
 public:
  explicit Examination(Session& session) : session_(session), palette_(session.palette()) {}

  // Runs one step, which returns its result as text. Returns false if the step failed.
  template <typename Step>
  bool step(const std::string& name, Step run) {
    try {
      const std::string found = run();
      std::cout << palette_.green("ok    ") << name << ": " << found << std::endl;
      return true;
    } catch (const Error& error) {
      std::cout << palette_.red("FAIL  ") << name << ": " << error.what() << "\n      -> "
                << remedy_of(error.kind()) << std::endl;
      if (!first_) first_ = error.kind();
      return false;
    }
  }

  void doubts(const std::vector<std::string>& texts) {
    for (const std::string& text : texts)
      std::cout << palette_.yellow("note  ") << text << std::endl;
    notes_ += texts.size();
  }

  // Throws the first failure, which decides the exit status.
  void finish() const {
    if (first_) throw Error(*first_, "problems found with " + session_.client().address());
    std::cout << (notes_ > 0 ? "The server works; check the notes.\n" : "All is well.\n");
  }

 private:
  Session& session_;
  Palette palette_;
  std::optional<ErrorKind> first_;
  std::size_t notes_ = 0;
};

std::string platform_found(Session& session) {
  const auto answer = session.client().query_pq("/csc");
  return "the server answers, platform number " + std::to_string(answer.platform.value_or(0));
}

std::string milliseconds_since(std::chrono::steady_clock::time_point start) {
  const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
  return std::to_string(std::lround(time.count())) + " ms";
}

void examine_section(Session& session, Examination& examination, const Target& section) {
  JsonPtr value;
  const bool is_there = examination.step("section " + section.text(), [&] {
    const auto start = std::chrono::steady_clock::now();
    value = session.read_section(section);
    return "answered in " + milliseconds_since(start);
  });
  if (is_there) examination.doubts(doubts_about(section, *value));
}

std::string dump_found(Session& session, pqclient::DumpSide side) {
  const pqclient::Dump dump = session.client().request_dump(side);
  const pqclient::Picture picture = pqclient::decode(dump);
  const bool is_blank = std::ranges::all_of(
      picture.rgb, [&](std::uint8_t value) { return value == picture.rgb.front(); });
  return std::to_string(dump.width) + "x" + std::to_string(dump.height) + " " +
         std::string(pqclient::format_name(dump.format)) + (is_blank ? ", all of one grey" : "");
}

void diagnose(Session& session, const Arguments& arguments) {
  Examination examination(session);
  const bool is_reachable =
      examination.step("board " + session.board().text(), [&] { return platform_found(session); });
  if (!is_reachable) examination.finish();
  for (const Target& section : pqclient::sections_in_writing_order())
    examine_section(session, examination, section);
  if (!arguments.quick) {
    using pqclient::DumpSide;
    for (const auto& [side, name] : {std::pair{DumpSide::kInput, "dump of the input"},
                                     {DumpSide::kOutput, "dump of the output"}}) {
      examination.step(name, [&session, side = side] { return dump_found(session, side); });
    }
  }
  examination.finish();
}

}  // namespace

void add_diagnose(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax command(add_command(
      grammar,
      {.name = "diagnose",
       .group = kBoards,
       .about = "Find faults between this machine and a board",
       .more =
           R"(Connects, queries every section of both documents, checks whether the values are plausible, and
requests a picture of each side. Changes nothing. Exits with the status of the first failed step.

Examples:
  pqctl diagnose
  pqctl diagnose --quick --host 192.0.2.7
)"},
      [arguments](Session& session) { diagnose(session, *arguments); }));
  command.flag("--quick", "Skip the pictures, which take 9 seconds", arguments->quick);
}
