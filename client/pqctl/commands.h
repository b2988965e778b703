// The subcommands of pqctl, one function and one file each: syntax, help and action. Commands may
// throw pqclient::Error and Interrupted.
#ifndef PQCTL_COMMANDS_H_
#define PQCTL_COMMANDS_H_

#include <functional>

#include "session.h"

namespace CLI {
class App;
}

// The chosen action with all its arguments.
using Command = std::function<void(Session&)>;

// The command line under construction. A subcommand adds itself to `app`, and sets `chosen` to its
// action if the user gives it.
struct Grammar {
  CLI::App& app;
  Command& chosen;
};

struct CommandHelp {
  const char* name;
  const char* group;  // heading in the list of commands, see below
  const char* about;  // one line
  const char* more;   // below the options: details and examples
};

inline constexpr const char* kSee = "See";
inline constexpr const char* kChange = "Change";
inline constexpr const char* kKeep = "Keep and bring back";
inline constexpr const char* kLook = "Look at the picture";
inline constexpr const char* kBoards = "Boards";

// Adds a subcommand and returns it, so that options can be added.
CLI::App& add_command(const Grammar& grammar, const CommandHelp& help, Command run);

// In the order of the help.
void add_list(const Grammar& grammar);
void add_get(const Grammar& grammar);
void add_show(const Grammar& grammar);
void add_plot(const Grammar& grammar);
void add_watch(const Grammar& grammar);
void add_set(const Grammar& grammar);
void add_gamma(const Grammar& grammar);
void add_try(const Grammar& grammar);
void add_patch(const Grammar& grammar);
void add_backup(const Grammar& grammar);
void add_diff(const Grammar& grammar);
void add_restore(const Grammar& grammar);
void add_undo(const Grammar& grammar);
void add_history(const Grammar& grammar);
void add_pattern(const Grammar& grammar);
void add_pattern_mode(const Grammar& grammar);
void add_dump(const Grammar& grammar);
void add_boards(const Grammar& grammar);
void add_diagnose(const Grammar& grammar);

#endif  // PQCTL_COMMANDS_H_
