// pqctl get: shows a section, a member or an entry as the board has it now.
#include <iostream>
#include <memory>
#include <string>

#include "commands.h"
#include "pqclient/error.h"
#include "pqclient/target.h"
#include "print_value.h"

namespace {

void get(const GlobalOptions& options, const std::string& path) {
  const pqclient::Target target = pqclient::parse_target(path);
  pqclient::TuningClient client = options.client();
  const pqclient::Answer answer = client.query_pq("/" + std::string(target.section->name));
  const cJSON* value = answer.value != nullptr ? target.find_in(*answer.value) : nullptr;
  if (value == nullptr) {
    throw pqclient::Error(pqclient::ErrorKind::kBadAnswer, "the answer holds no " + target.text());
  }
  if (options.json) {
    std::cout << pqclient::print_json(*value) << '\n';
  } else {
    print_value(std::cout, *value, *target.section, target.member);
  }
}

}  // namespace

void add_get(CLI::App& app, const GlobalOptions& options) {
  CLI::App* command = app.add_subcommand("get", "Show what the board has stored");
  auto path = std::make_shared<std::string>();
  command
      ->add_option("path", *path,
                   "SECTION[/MEMBER[/INDEX]]; sections are csc, gamma, dci, acm and sharp")
      ->required();
  command->callback([path, &options] { get(options, *path); });
}
