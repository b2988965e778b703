#include "command/inspect_board.h"

#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "description/description.h"
#include "files/files.h"
#include "launch/installation.h"
#include "launch/state_folder.h"
#include "properties/property_store.h"

namespace board {
namespace {

std::filesystem::path state_folder(const std::string& state) {
  if (!state.empty()) {
    if (std::filesystem::is_directory(std::filesystem::path(state) / "board")) return state;
    throw std::runtime_error("no board has its state in " + state);
  }
  const auto boards = running_boards();
  if (boards.size() == 1) return boards[0];
  if (boards.empty()) {
    throw std::runtime_error(
        "no board is running; start one (qxboard run), or name its folder with --state DIR");
  }
  std::string message = "several boards are running; choose one with --state DIR:";
  for (const auto& folder : boards)
    message += "\n  " + folder.string();
  throw std::runtime_error(message);
}

PropertyStore properties(const std::string& state) {
  return PropertyStore(state_folder(state) / "board/properties");
}

}  // namespace

void print_properties(const std::string& state, const std::string& name) {
  const auto store = properties(state);
  if (!name.empty()) {
    std::cout << store.get(name).value_or("") << '\n';
    return;
  }
  for (const auto& [property, value] : store.all()) {
    std::cout << '[' << property << "]: [" << value << "]\n";
  }
}

void set_property(const std::string& state, const std::string& name, const std::string& value) {
  const int result = properties(state).set(name, value);
  if (result != 0) throw std::runtime_error(PropertyStore::refusal(name, value, result));
}

void print_calls(const std::string& state) {
  std::cout << read_file(state_folder(state) / "board/calls").value_or("");
}

void print_boards() {
  for (const auto& name : board_names()) {
    const auto board = read_description(description_file(name));
    std::cout << name << ": platform " << board.platform << ", store " << board.store_version[0]
              << '.' << board.store_version[1] << ", " << board.connectors.size()
              << " connector(s)\n";
  }
}

}  // namespace board
