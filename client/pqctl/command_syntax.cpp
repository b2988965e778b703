#include "command_syntax.h"

#include <CLI/CLI.hpp>
#include <sstream>

namespace {

template <typename Variable>
CLI::Option* add(CLI::App& command, const char* names, const Shown& shown, Variable& into) {
  return command.add_option(names, into, shown.about)->option_text(shown.as);
}

template <typename Variable>
CLI::Option* add(CLI::App& command, const char* names, const Shown& shown, Variable& into,
                 const Bounds& bounds) {
  return add(command, names, shown, into)->check([bounds](const std::string& word) {
    double number = 0;
    if (CLI::detail::lexical_cast(word, number) && bounds.least <= number &&
        number <= bounds.most) {
      return std::string();
    }
    std::ostringstream text;
    text << word << " is out of range: " << bounds.least << " to " << bounds.most;
    return text.str();
  });
}

}  // namespace

CommandSyntax& CommandSyntax::word(const char* names, const Shown& shown, std::string& into,
                                   Need need) {
  last_ = add(command_, names, shown, into)->required(need == Need::kRequired);
  return *this;
}

CommandSyntax& CommandSyntax::word(const char* names, const Shown& shown,
                                   std::optional<int>& into) {
  last_ = add(command_, names, shown, into);
  return *this;
}

CommandSyntax& CommandSyntax::words(const char* names, const Shown& shown,
                                    std::vector<std::string>& into, Need need) {
  last_ = add(command_, names, shown, into)->required(need == Need::kRequired);
  return *this;
}

CommandSyntax& CommandSyntax::choice(const char* names, const Shown& shown,
                                     const std::vector<std::string>& choices, std::string& into,
                                     Need need) {
  last_ = add(command_, names, shown, into)
              ->required(need == Need::kRequired)
              ->check(CLI::IsMember(choices));
  return *this;
}

CommandSyntax& CommandSyntax::flag(const char* names, const char* about, bool& into) {
  last_ = command_.add_flag(names, into, about);
  return *this;
}

CommandSyntax& CommandSyntax::number(const char* names, const Shown& shown, int& into,
                                     const Bounds& bounds) {
  last_ = add(command_, names, shown, into, bounds);
  return *this;
}

CommandSyntax& CommandSyntax::number(const char* names, const Shown& shown, double& into,
                                     const Bounds& bounds) {
  last_ = add(command_, names, shown, into, bounds);
  return *this;
}

CommandSyntax& CommandSyntax::number(const char* names, const Shown& shown,
                                     std::optional<double>& into,
                                     const std::optional<Bounds>& bounds) {
  last_ = bounds ? add(command_, names, shown, into, *bounds) : add(command_, names, shown, into);
  return *this;
}

CommandSyntax& CommandSyntax::numbers(const char* names, const Shown& shown,
                                      std::vector<double>& into, int count, const Bounds& bounds) {
  last_ = add(command_, names, shown, into, bounds)->expected(count);
  return *this;
}

CommandSyntax& CommandSyntax::list(const char* names, const Shown& shown,
                                   std::vector<std::string>& into) {
  last_ = add(command_, names, shown, into)->delimiter(',');
  return *this;
}

CommandSyntax& CommandSyntax::under(const char* heading) {
  last_->group(heading);
  return *this;
}

CommandSyntax CommandSyntax::command(const char* name, const char* about, const char* more) {
  CLI::App* command = command_.add_subcommand(name, about);
  command->footer(more);
  return CommandSyntax(*command);
}
