// qxboard: runs a simulated board, and looks at one that runs.
#include <CLI/CLI.hpp>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "command/inspect_board.h"
#include "command/run_board.h"
#include "launch/board.h"

namespace {

constexpr int kFailed = 1;

struct Arguments {
  std::string board = "tv";
  board::BoardOptions options{.log_to_terminal = true, .announced = true};
  std::string isolation = "auto";
  std::vector<std::string> environment;
  std::string state;
  std::string name;
  std::string value;
  std::string file;
  int status = 0;
};

const std::map<std::string, board::Isolation> kIsolations = {
    {"auto", board::Isolation::kAuto},
    {"namespace", board::Isolation::kNamespace},
    {"proot", board::Isolation::kProot}};

// The daemon starts in another folder than the one that the user is in.
void make_absolute(board::BoardOptions& options) {
  for (auto& folder : options.libraries)
    folder = std::filesystem::absolute(folder);
}

void set_environment(const std::vector<std::string>& settings, board::BoardOptions& options) {
  for (const auto& setting : settings) {
    const size_t equals = setting.find('=');
    if (equals == 0 || equals == std::string::npos) {
      throw CLI::ValidationError("--env", setting + " must be NAME=VALUE");
    }
    options.environment[setting.substr(0, equals)] = setting.substr(equals + 1);
  }
}

void add_run(CLI::App& app, Arguments& arguments) {
  auto& options = arguments.options;
  auto* command =
      app.add_subcommand("run", "Power a board on and run the daemon on it until Ctrl-C");
  command->add_option("--board", arguments.board, "Name (qxboard list) or description file")
      ->capture_default_str()
      ->type_name("NAME|FILE");
  command->add_option("--state", options.state, "Keep what the board writes here")
      ->type_name("DIR");
  command
      ->add_option("--isolation", arguments.isolation,
                   "How the daemon sees the board's paths: in a private root (namespace), through "
                   "proot, or whichever this machine allows (auto)")
      ->capture_default_str()
      ->check(CLI::IsMember(&kIsolations));
  command
      ->add_option("--libraries", options.libraries,
                   "Folder whose libraries stand in for the board's; may be given several times")
      ->allow_extra_args(false)
      ->check(CLI::ExistingDirectory)
      ->type_name("DIR");
  command->add_option("--env", arguments.environment, "Environment variable for the daemon")
      ->allow_extra_args(false)
      ->type_name("NAME=VALUE");
  command->add_option("--hurry", options.hurry, "Divide the daemon's fixed waits by N")
      ->check(CLI::Range(1U, 10'000U))
      ->type_name("N");
  command->add_option("--daemon", options.daemon, "Program to run (default: this build's)")
      ->type_name("FILE");
  command->footer("The daemon's own arguments stand after --, as in: qxboard run -- -f 150");
  command->callback([&] {
    make_absolute(options);
    options.isolation = kIsolations.at(arguments.isolation);
    set_environment(arguments.environment, options);
    arguments.status = board::run_in_foreground(arguments.board, options);
  });
}

CLI::App* add_inspection(CLI::App& app, Arguments& arguments, const char* name, const char* text) {
  auto* command = app.add_subcommand(name, text);
  command->add_option("--state", arguments.state, "The board's folder (default: the one that runs)")
      ->type_name("DIR");
  return command;
}

void add_inspections(CLI::App& app, Arguments& arguments) {
  auto* get = add_inspection(app, arguments, "getprop", "Show a board's properties, or one");
  get->add_option("name", arguments.name, "Property");
  get->callback([&] { board::print_properties(arguments.state, arguments.name); });

  auto* set = add_inspection(app, arguments, "setprop", "Set a property of a board");
  set->add_option("name", arguments.name, "Property")->required();
  set->add_option("value", arguments.value, "Its new value")->required();
  set->callback([&] { board::set_property(arguments.state, arguments.name, arguments.value); });

  add_inspection(app, arguments, "calls", "Show which programs the daemon started")->callback([&] {
    board::print_calls(arguments.state);
  });

  add_inspection(app, arguments, "drm", "Show what was set on the display device")->callback([&] {
    board::print_display(arguments.state);
  });

  auto* screenshot =
      add_inspection(app, arguments, "screenshot", "Save what the screen shows as a PNG");
  screenshot->add_option("file", arguments.file, "PNG file to write")->required();
  screenshot->callback([&] { board::save_screenshot(arguments.state, arguments.file); });

  app.add_subcommand("list", "Show the boards there are")->callback(board::print_boards);
}

// Words after "run ... --" belong to the daemon. They are removed here, so that the parser refuses
// every other word, such as a board's name without --board.
std::vector<std::string> take_daemon_arguments(std::vector<std::string>& words) {
  if (words.empty() || words.front() != "run") return {};
  const auto dashes = std::ranges::find(words, "--");
  if (dashes == words.end()) return {};
  std::vector<std::string> arguments(dashes + 1, words.end());
  words.erase(dashes, words.end());
  return arguments;
}

// words: the command line. Help, too, comes by way of an exception.
int explain(const CLI::ParseError& error, const CLI::App& app,
            const std::vector<std::string>& words) {
  if (error.get_exit_code() == 0) return app.exit(error);
  const auto commands = app.get_subcommands();
  const bool unknown_command =
      commands.empty() && !words.empty() && !words.front().starts_with('-');
  std::cerr << "qxboard: "
            << (unknown_command ? "there is no command \"" + words.front() + '"' : error.what())
            << ". See qxboard " << (commands.empty() ? "" : commands.front()->get_name() + " ")
            << "--help\n";
  return kFailed;
}

int run(int argc, char** argv) {
  CLI::App app("A simulated display board that runs the PQ tool server.", "qxboard");
  app.require_subcommand(1);
  Arguments arguments;
  std::vector<std::string> words(argv + 1, argv + argc);
  arguments.options.arguments = take_daemon_arguments(words);
  add_run(app, arguments);
  add_inspections(app, arguments);
  try {
    app.parse(std::vector(words.rbegin(), words.rend()));  // the parser takes them from the end
  } catch (const CLI::ParseError& error) {
    return explain(error, app, words);
  }
  if (!(std::cout << std::flush)) throw std::runtime_error("cannot write to standard output");
  return arguments.status;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "qxboard: " << error.what() << '\n';
    return kFailed;
  }
}
