// Arguments and options of a command. Commands use this instead of the parser itself, whose header
// takes longer to compile than a whole command.
#ifndef PQCTL_COMMAND_SYNTAX_H_
#define PQCTL_COMMAND_SYNTAX_H_

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

// An argument in the help: its placeholder and its meaning.
struct Shown {
  const char* as;  // "FILE", "NUMBER", "PLACE..."
  const char* about;
};

enum class Need { kRequired, kOptional };

// Inclusive.
struct Bounds {
  double least;
  double most;
};
inline constexpr Bounds kSecondsOfADay = {0, 86'400};

// Each call adds one argument or option. The values are stored in the variables when the command
// line is parsed, so these must live until then. An invalid command line ends pqctl with status 1.
class CommandSyntax {
 public:
  explicit CommandSyntax(CLI::App& command) : command_(command) {}

  // Names like "file" are positional, in the order of the calls; names like "-o,--output" are
  // options. Required words need at least one.
  CommandSyntax& word(const char* names, const Shown& shown, std::string& into,
                      Need need = Need::kOptional);
  CommandSyntax& word(const char* names, const Shown& shown, std::optional<int>& into);
  CommandSyntax& words(const char* names, const Shown& shown, std::vector<std::string>& into,
                       Need need = Need::kRequired);
  // One of the choices, spelt exactly.
  CommandSyntax& choice(const char* names, const Shown& shown,
                        const std::vector<std::string>& choices, std::string& into,
                        Need need = Need::kOptional);

  CommandSyntax& flag(const char* names, const char* about, bool& into);
  CommandSyntax& number(const char* names, const Shown& shown, int& into, const Bounds& bounds);
  CommandSyntax& number(const char* names, const Shown& shown, double& into, const Bounds& bounds);
  CommandSyntax& number(const char* names, const Shown& shown, std::optional<double>& into,
                        const std::optional<Bounds>& bounds = std::nullopt);
  // Exactly `count` numbers, one word each.
  CommandSyntax& numbers(const char* names, const Shown& shown, std::vector<double>& into,
                         int count, const Bounds& bounds);
  // Words separated by commas.
  CommandSyntax& list(const char* names, const Shown& shown, std::vector<std::string>& into);

  // Puts the last addition under a heading of its own in the help.
  CommandSyntax& under(const char* heading);

  // A subcommand; `more` is its help below the options.
  CommandSyntax command(const char* name, const char* about, const char* more);

 private:
  CLI::App& command_;
  CLI::Option* last_ = nullptr;
};

#endif  // PQCTL_COMMAND_SYNTAX_H_
