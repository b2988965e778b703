#include "command_syntax.h"

#include <CLI/CLI.hpp>

namespace {

constexpr double kMostSeconds = 86400;

template <typename Variable>
CLI::Option* add(CLI::App& command, const char* names, const Shown& shown, Variable& into) {
  return command.add_option(names, into, shown.about)->option_text(shown.as);
}

}  // namespace

CommandSyntax& CommandSyntax::word(const char* name, const Shown& shown, std::string& into,
                                   Need need) {
  add(command_, name, shown, into)->required(need == Need::kRequired);
  return *this;
}

CommandSyntax& CommandSyntax::word(const char* name, const Shown& shown, std::optional<int>& into) {
  add(command_, name, shown, into);
  return *this;
}

CommandSyntax& CommandSyntax::words(const char* name, const Shown& shown,
                                    std::vector<std::string>& into) {
  add(command_, name, shown, into)->required();
  return *this;
}

CommandSyntax& CommandSyntax::flag(const char* names, const char* about, bool& into) {
  command_.add_flag(names, into, about);
  return *this;
}

CommandSyntax& CommandSyntax::seconds(const char* names, const Shown& shown,
                                      std::optional<double>& into) {
  add(command_, names, shown, into)->check(CLI::Range(0.0, kMostSeconds));
  return *this;
}

CommandSyntax& CommandSyntax::list(const char* names, const Shown& shown,
                                   std::vector<std::string>& into) {
  add(command_, names, shown, into)->delimiter(',');
  return *this;
}
