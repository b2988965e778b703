#include "command/inspect_board.h"

#include <exception>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <stdexcept>

#include "description/description.h"
#include "drm/display_state.h"
#include "files/files.h"
#include "launch/installation.h"
#include "launch/state_folder.h"
#include "properties/property_store.h"
#include "screen/screenshot.h"

namespace board {
namespace {

constexpr int kNameColumn = 12;

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

void print_display(const std::string& state) {
  const auto board = state_folder(state) / "board";
  try {
    std::cout << describe_display(board);
  } catch (const std::exception& error) {
    throw std::runtime_error(std::string("cannot tell what the display device was set to: ") +
                             error.what() + " (was this board ever powered on?)");
  }
}

void save_screenshot(const std::string& state, const std::string& file) {
  screen::write_screenshot(state_folder(state) / "board", file);
}

void print_boards() {
  for (const auto& name : board_names()) {
    const auto board = read_description(description_file(name));
    std::cout << std::left << std::setw(kNameColumn) << name << board.about << '\n';
  }
}

}  // namespace board
