#include <algorithm>
#include <iomanip>
#include <iostream>

#include "commands.h"

namespace {

void print_json(const Configuration& configuration) {
  const pqclient::JsonPtr boards(cJSON_CreateArray());
  for (const Board& board : configuration.boards) {
    pqclient::JsonPtr entry(cJSON_CreateObject());
    cJSON_AddStringToObject(entry.get(), "name", board.name.c_str());
    cJSON_AddStringToObject(entry.get(), "address", board.address.text().c_str());
    cJSON_AddBoolToObject(entry.get(), "readOnly", board.is_read_only);
    cJSON_AddBoolToObject(entry.get(), "default", board.name == configuration.default_board);
    pqclient::add_element(*boards, std::move(entry));
  }
  std::cout << pqclient::print_json(*boards) << '\n';
}

void list_boards(const Session& session) {
  const Configuration configuration = read_configuration();
  if (session.options().json) {
    print_json(configuration);
    return;
  }
  if (configuration.boards.empty()) {
    std::cout << "no boards are listed in " << configuration.file << '\n';
    return;
  }
  std::size_t width = 0;
  for (const Board& board : configuration.boards)
    width = std::max(width, board.name.size());
  for (const Board& board : configuration.boards) {
    std::cout << std::left << std::setw(static_cast<int>(width)) << board.name << std::right << "  "
              << board.address.text() << (board.is_read_only ? "  read-only" : "")
              << (board.name == configuration.default_board ? "  default" : "") << '\n';
  }
}

}  // namespace

void add_boards(const Grammar& grammar) {
  add_command(
      grammar,
      {.name = "boards",
       .group = kBoards,
       .about = "List the boards for --board",
       .more =
           R"(Boards are listed in $XDG_CONFIG_HOME/pqctl/boards.ini, usually ~/.config/pqctl/boards.ini:

  default = living-room

  [living-room]
  host = 192.0.2.7
  timeout = 8

  [reference]
  host = 192.0.2.8:5543
  read-only = true

No command changes anything on a read-only board, even if it is given by its address.
)"},
      [](const Session& session) { list_boards(session); });
}
