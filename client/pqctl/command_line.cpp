#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "command_syntax.h"
#include "pqclient/schema.h"

namespace {

constexpr const char* kFooter = R"(Places in the two documents:
  csc                              a section: csc, dci, acm, gamma or sharp
  csc/cscBrightness                one of its members
  gamma/gammaTab_R/512             one entry of a table
  ai/dci/nature-sky/dciEnable      the same in the AI document, which has dci and acm once for
                                   each scene
  pqctl list shows all of them, with their ranges.

Examples:
  pqctl get csc
  pqctl set csc/cscMode LOW_LATENCY_MODE csc/cscBrightness +10
  pqctl --host 192.0.2.7 get gamma/gammaTab_R/512
  pqctl dump out -o screen.png

The board: --host, else --board, else the variables PQCTL_HOST and PQCTL_BOARD, else the default of
boards.ini, else this machine's port 5543. For a board on USB: adb forward tcp:5543 tcp:5543

Exit status:
  0    done
  1    wrong usage: unknown command, name or index, value out of range, board is read-only
  2    cannot connect to the board
  3    the board stored a different value than asked
  4    time-out: the board did not answer, or not completely
  5    the board's answer is invalid
  6    the board closed the connection before the answer was complete
  7    a file cannot be read or written
  8    diff found differences
  130  interrupted by Ctrl-C
)";

const std::map<std::string, ColorUse> kColorUses = {
    {"auto", ColorUse::kAuto}, {"always", ColorUse::kAlways}, {"never", ColorUse::kNever}};

void add_global_options(CLI::App& app, Options& options) {
  // An empty value would silently select another board than the intended one.
  const auto not_empty = [](const std::string& word) {
    return word.empty() ? "it is empty" : std::string();
  };
  CLI::Option* host = app.add_option("--host", options.host, "Address of the board")
                          ->option_text("HOST[:PORT]")
                          ->check(not_empty);
  app.add_option("--port", options.port, "TCP port of the server (5543)")
      ->option_text("N")
      ->check(CLI::Range(1, 65535));
  app.add_option("--board", options.board, "Board by its name in boards.ini, see pqctl boards")
      ->option_text("NAME")
      ->check(not_empty)
      ->excludes(host);
  CommandSyntax(app).number(
      "--timeout",
      {"SECONDS",
       "Maximum wait for the connection and for each answer (5; 10 where the\n"
       "board redraws first, 20 for a dump)"},
      options.timeout_seconds, Bounds{0.001, kMaxTimeoutSeconds});
  app.add_flag("--json", options.json, "Print nothing but JSON on standard output");
  app.add_flag("-q,--quiet", options.quiet, "No notes and no progress, only errors");
  app.add_option_function<std::string>(
         "--color", [&options](const std::string& use) { options.color = kColorUses.at(use); },
         "auto (on a terminal, unless NO_COLOR is set), always or never")
      ->option_text("WHEN")
      ->check(CLI::IsMember(kColorUses));
}

// The parser would take a separate step such as "-=5" for an option, so it is joined to its place.
std::vector<std::string> words_of(int argc, char** argv) {
  std::vector<std::string> words;
  for (const std::string word : std::span(argv, static_cast<std::size_t>(argc)).subspan(1)) {
    if (word.starts_with("-=") && !words.empty()) {
      words.back() += word;
    } else {
      words.push_back(word);
    }
  }
  return words;
}

// " pattern sequence"
std::string chosen_commands(const CLI::App& app) {
  const auto chosen = app.get_subcommands();
  return chosen.empty() ? "" : " " + chosen.front()->get_name() + chosen_commands(*chosen.front());
}

// The parser does not name the command that it does not know; this text does.
std::string explained(const CLI::ParseError& error, const CLI::App& app,
                      std::span<const std::string> words) {
  std::vector<std::string> commands;
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
    commands.push_back(command->get_name());
  const std::vector<std::string_view> known(commands.begin(), commands.end());
  const bool lacks_command =
      dynamic_cast<const CLI::RequiredError*>(&error) != nullptr && app.get_subcommands().empty();
  if (!lacks_command) return error.what();
  auto typed = words.begin();
  while (typed != words.end() && typed->starts_with('-')) {
    const CLI::Option* option = app.get_option_no_throw(*typed);
    const bool has_value = option != nullptr && option->get_items_expected_min() > 0;
    typed += has_value && typed + 1 != words.end() ? 2 : 1;
  }
  if (typed == words.end()) return "a command is needed, such as: pqctl get csc";
  const auto near = pqclient::nearest_names(*typed, known);
  return "there is no command \"" + *typed + "\"" +
         (near.empty() ? "" : ", nearest: " + std::string(near.front()));
}

}  // namespace

CLI::App& add_command(const Grammar& grammar, const CommandHelp& help, Command run) {
  CLI::App* command = grammar.app.add_subcommand(help.name, help.about);
  command->group(help.group);
  command->footer(std::string(help.more) + "\nOptions of all commands: pqctl --help");
  command->callback([run = std::move(run), &chosen = grammar.chosen] { chosen = run; });
  return *command;
}

std::optional<ExitStatus> parse_command_line(int argc, char** argv, CommandLine& line) {
  CLI::App app("Reads and changes the picture quality of a board while the picture is on screen.",
               "pqctl");
  app.set_version_flag("--version", PQCTL_VERSION);
  app.footer(kFooter);
  app.require_subcommand(1);
  app.fallthrough();  // global options may also follow the subcommand
  add_global_options(app, line.options);
  const Grammar grammar{.app = app, .chosen = line.command};
  for (const auto add :
       {add_list, add_get, add_show, add_plot, add_watch, add_set, add_gamma, add_try, add_patch,
        add_backup, add_diff, add_restore, add_undo, add_history, add_pattern, add_pattern_mode,
        add_dump, add_boards, add_diagnose}) {
    add(grammar);
  }
  std::vector<std::string> words = words_of(argc, argv);
  for (const std::string& word : words)
    line.text.append(line.text.empty() ? "" : " ").append(word);
  try {
    app.parse(std::vector(words.rbegin(), words.rend()));  // the parser takes them from the back
  } catch (const CLI::ParseError& error) {
    // Help and version also arrive as this exception.
    if (error.get_exit_code() == 0) return static_cast<ExitStatus>(app.exit(error));
    std::cerr << "pqctl: " << explained(error, app, words) << ". See pqctl" << chosen_commands(app)
              << " --help\n";
    return ExitStatus::kUsage;
  }
  return std::nullopt;
}
