// What may stand behind a command's name. Commands use this instead of the parser itself, whose
// header takes longer to compile than all of a command.
#ifndef PQCTL_COMMAND_SYNTAX_H_
#define PQCTL_COMMAND_SYNTAX_H_

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

// How something is shown in the help: what stands for it, and what it means.
struct Shown {
  const char* as;  // "FILE", "NUMBER", "PLACE..."
  const char* about;
};

enum class Need { kRequired, kOptional };

// Both ends belong to it.
struct Bounds {
  double least;
  double most;
};
inline constexpr Bounds kSecondsOfADay = {0, 86'400};

// Each call adds one thing; the values go into the variables when the command line is parsed, so
// these must live until then. A command line that does not fit ends pqctl with status 1.
class CommandSyntax {
 public:
  explicit CommandSyntax(CLI::App& command) : command_(command) {}

  // With names like "file": by position, in the order of the calls. With names like
  // "-o,--output": an option. Words that are required are at least one.
  CommandSyntax& word(const char* names, const Shown& shown, std::string& into,
                      Need need = Need::kOptional);
  CommandSyntax& word(const char* names, const Shown& shown, std::optional<int>& into);
  CommandSyntax& words(const char* names, const Shown& shown, std::vector<std::string>& into,
                       Need need = Need::kRequired);
  // One of the choices, as it is written there.
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
  // With commas between them.
  CommandSyntax& list(const char* names, const Shown& shown, std::vector<std::string>& into);

  // Puts what was added last under a heading of its own in the help.
  CommandSyntax& under(const char* heading);

  // A command of the command, with what its help says below the options.
  CommandSyntax command(const char* name, const char* about, const char* more);

 private:
  CLI::App& command_;
  CLI::Option* last_ = nullptr;
};

#endif  // PQCTL_COMMAND_SYNTAX_H_
