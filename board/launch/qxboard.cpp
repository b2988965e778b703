// qxboard: runs a simulated board, and looks at one that runs.
#include <unistd.h>
#include <CLI/CLI.hpp>

#include <csignal>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "files/files.h"
#include "launch/board.h"
#include "launch/installation.h"
#include "properties/property_store.h"

namespace {

// An impatient user gets rid of a daemon that does not end.
constexpr int kInterruptsUntilKill = 3;

struct Arguments {
  std::string board = "tv";
  std::string state;
  std::string isolation = "auto";
  std::vector<std::string> libraries;
  std::vector<std::string> environment;
  std::string daemon;
  std::vector<std::string> daemon_arguments;
  std::string name;
  std::string value;
};

board::BoardOptions options(const Arguments& arguments) {
  board::BoardOptions options;
  options.daemon = arguments.daemon;
  options.arguments = arguments.daemon_arguments;
  options.state = arguments.state;
  options.log_to_terminal = true;
  for (const auto& folder : arguments.libraries) {
    options.libraries.push_back(std::filesystem::absolute(folder));
  }
  for (const auto& setting : arguments.environment) {
    const size_t equals = setting.find('=');
    if (equals == 0 || equals == std::string::npos) {
      throw std::runtime_error("--env " + setting + ": must be NAME=VALUE");
    }
    options.environment[setting.substr(0, equals)] = setting.substr(equals + 1);
  }
  if (arguments.isolation == "namespace") options.isolation = board::Isolation::kNamespace;
  if (arguments.isolation == "preload") options.isolation = board::Isolation::kPreload;
  return options;
}

void explain_fallback() {
  std::cerr << "qxboard: cannot make a private root here: " << board::private_root_obstacle()
            << "\nqxboard: the board's paths are mapped inside the daemon instead; it works, but "
               "the daemon sees\nqxboard: the rest of this machine. For a private root, install "
               "bubblewrap and allow user namespaces\nqxboard: (sysctl "
               "kernel.unprivileged_userns_clone=1, or run outside a restricted container).\n";
}

sigset_t watched_signals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGQUIT, SIGHUP, SIGCHLD})
    sigaddset(&signals, signal);
  return signals;
}

// Hands the signals that end a program on to the daemon until it ends; returns its status.
int follow(board::Board& board) {
  const sigset_t signals = watched_signals();
  int interrupts = 0;
  for (;;) {
    if (const auto status = board.wait(board::Board::Milliseconds(0))) return *status;
    const int signal = ::sigwaitinfo(&signals, nullptr);
    if (signal <= 0 || signal == SIGCHLD) continue;
    board.signal(++interrupts < kInterruptsUntilKill ? signal : SIGKILL);
  }
}

int run(const Arguments& arguments) {
  const sigset_t signals = watched_signals();
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  board::Board board(arguments.board, options(arguments));
  if (board.isolation() == board::Isolation::kPreload && arguments.isolation == "auto") {
    explain_fallback();
  }
  std::cerr << "qxboard: board " << board.description().name << ", state in "
            << board.state().string() << '\n';
  board.start();
  return follow(board);
}

// The board that a command is about: the one named, or the only one that runs.
std::filesystem::path state_folder(const Arguments& arguments) {
  if (!arguments.state.empty()) {
    if (std::filesystem::is_directory(std::filesystem::path(arguments.state) / "board")) {
      return arguments.state;
    }
    throw std::runtime_error("no board has its state in " + arguments.state);
  }
  const auto boards = board::running_boards();
  if (boards.size() == 1) return boards[0];
  if (boards.empty()) {
    throw std::runtime_error(
        "no board is running; start one (qxboard run), or name its folder "
        "with --state DIR");
  }
  std::string folders;
  for (const auto& folder : boards)
    folders += "\n  " + folder.string();
  throw std::runtime_error("several boards are running; choose one with --state DIR:" + folders);
}

board::PropertyStore properties(const Arguments& arguments) {
  return board::PropertyStore(state_folder(arguments) / "board/properties");
}

int get_property(const Arguments& arguments) {
  const auto store = properties(arguments);
  if (!arguments.name.empty()) {
    std::cout << store.get(arguments.name).value_or("") << '\n';
    return 0;
  }
  for (const auto& [name, value] : store.all()) {
    std::cout << '[' << name << "]: [" << value << "]\n";
  }
  return 0;
}

int set_property(const Arguments& arguments) {
  const int result = properties(arguments).set(arguments.name, arguments.value);
  if (result == 0) return 0;
  throw std::runtime_error("cannot set " + arguments.name + " to \"" + arguments.value +
                           "\": " + board::PropertyStore::explain(result));
}

int show_calls(const Arguments& arguments) {
  std::cout << board::read_file(state_folder(arguments) / "board/calls").value_or("");
  return 0;
}

int list_boards() {
  for (const auto& name : board::board_names()) {
    const auto description = board::read_description(board::description_file(name));
    std::cout << name << ": " << description.platform << ", store " << description.store_version[0]
              << '.' << description.store_version[1] << ", " << description.connectors.size()
              << " connectors\n";
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("A simulated display board that runs the PQ tool server.", "qxboard");
  app.require_subcommand(1);
  Arguments arguments;
  const auto state_option = [&](CLI::App* command, const char* text) {
    command->add_option("--state", arguments.state, text)->type_name("DIR");
  };
  int status = 0;

  auto* run_command = app.add_subcommand(
      "run", "Power a board on and run the daemon on it, until it ends or Ctrl-C.");
  run_command->add_option("--board", arguments.board, "Name (qxboard list) or description file")
      ->capture_default_str()
      ->type_name("NAME|FILE");
  state_option(run_command, "Folder that keeps what the board writes (default: forgotten)");
  run_command->add_option("--isolation", arguments.isolation, "How the daemon meets its paths")
      ->check(CLI::IsMember({"auto", "namespace", "preload"}))
      ->capture_default_str();
  run_command
      ->add_option("--libraries", arguments.libraries,
                   "Folder whose libraries stand in for the board's")
      ->type_name("DIR");
  run_command->add_option("--env", arguments.environment, "Variable for the daemon")
      ->type_name("NAME=VALUE");
  run_command->add_option("--daemon", arguments.daemon, "Program to run (default: this build's)")
      ->type_name("FILE");
  run_command->add_option("arguments", arguments.daemon_arguments,
                          "The daemon's own arguments, after --");
  run_command->callback([&] { status = run(arguments); });

  auto* get_command = app.add_subcommand("getprop", "Show a board's properties, or one.");
  state_option(get_command, "The board (default: the one that runs)");
  get_command->add_option("name", arguments.name, "Property");
  get_command->callback([&] { status = get_property(arguments); });

  auto* set_command = app.add_subcommand("setprop", "Set a property of a board.");
  state_option(set_command, "The board (default: the one that runs)");
  set_command->add_option("name", arguments.name, "Property")->required();
  set_command->add_option("value", arguments.value, "Its new value")->required();
  set_command->callback([&] { status = set_property(arguments); });

  auto* calls_command = app.add_subcommand("calls", "Show which programs the daemon started.");
  state_option(calls_command, "The board (default: the one that runs)");
  calls_command->callback([&] { status = show_calls(arguments); });

  app.add_subcommand("list", "Show the boards there are.")->callback([&] {
    status = list_boards();
  });

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  } catch (const std::exception& error) {
    std::cerr << "qxboard: " << error.what() << '\n';
    return 1;
  }
  return status;
}
