// What may stand behind a command's name. Commands use this instead of the parser itself, whose
// header takes longer to compile than all of a command.
#ifndef PQCTL_COMMAND_SYNTAX_H_
#define PQCTL_COMMAND_SYNTAX_H_

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

// How something is shown in the help: what stands for it, and what it means.
struct Shown {
  const char* as;  // "FILE", "NUMBER", "PLACE..."
  const char* about;
};

enum class Need { kRequired, kOptional };

// Each call adds one thing; the values go into the variables when the command line is parsed, so
// these must live until then. A command line that does not fit ends pqctl with status 1.
class CommandSyntax {
 public:
  explicit CommandSyntax(CLI::App& command) : command_(command) {}

  // By position, in the order of the calls.
  CommandSyntax& word(const char* name, const Shown& shown, std::string& into, Need need);
  CommandSyntax& word(const char* name, const Shown& shown, std::optional<int>& into);
  CommandSyntax& words(const char* name, const Shown& shown, std::vector<std::string>& into);

  // names: "-n,--dry-run"
  CommandSyntax& flag(const char* names, const char* about, bool& into);
  CommandSyntax& seconds(const char* names, const Shown& shown, std::optional<double>& into);
  // With commas between them.
  CommandSyntax& list(const char* names, const Shown& shown, std::vector<std::string>& into);

 private:
  CLI::App& command_;
};

#endif  // PQCTL_COMMAND_SYNTAX_H_
