#include "configuration.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include "files.h"
#include "pqclient/error.h"
#include "pqclient/schema.h"
#include "user_folders.h"

namespace {

using pqclient::Error;
using pqclient::ErrorKind;

[[noreturn]] void refuse(const std::string& file, const std::string& what) {
  throw Error(ErrorKind::kInput, file + ": " + what);
}

bool truth(const std::string& file, const std::string& key, const std::string& text) {
  if (text == "true" || text == "yes" || text == "1") return true;
  if (text == "false" || text == "no" || text == "0") return false;
  refuse(file, key + " cannot be \"" + text + "\": use true or false");
}

double positive_seconds(const std::string& file, const std::string& text) {
  double seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (error != std::errc() || end != text.data() + text.size() ||
      !(seconds > 0 && seconds <= kMaxTimeoutSeconds)) {
    refuse(file, "timeout cannot be \"" + text + "\": give seconds, such as 8");
  }
  return seconds;
}

pqclient::Address address_in(const std::string& file, const std::string& text) {
  try {
    return pqclient::parse_address(text);
  } catch (const Error& error) {
    refuse(file, error.what());
  }
}

void apply(const std::string& file, const std::string& key, const std::string& value,
           Board& board) {
  if (key == "host") {
    board.address = address_in(file, value);
  } else if (key == "timeout") {
    board.timeout_seconds = positive_seconds(file, value);
  } else if (key == "read-only") {
    board.is_read_only = truth(file, key, value);
  } else {
    refuse(file, "[" + board.name + "] has \"" + key +
                     "\", which is unknown: use host, timeout or read-only");
  }
}

std::string joined(const std::vector<std::string>& words, const char* separator) {
  std::string text;
  for (const std::string& word : words)
    text.append(text.empty() ? "" : separator).append(word);
  return text;
}

Board& board_called(std::vector<Board>& boards, const std::string& name) {
  const auto found = std::ranges::find(boards, name, &Board::name);
  if (found != boards.end()) return *found;
  boards.push_back({.name = name, .address = {}, .timeout_seconds = {}, .is_read_only = false});
  return boards.back();
}

void apply(const CLI::ConfigItem& item, Configuration& configuration) {
  // The parser marks where sections begin and end; its mark for [lab.tv] names [lab].
  if (item.name == "++" || item.name == "--") return;
  const std::string value = joined(item.inputs, " ");
  if (!item.parents.empty()) {
    apply(configuration.file, item.name, value,
          board_called(configuration.boards, joined(item.parents, ".")));
  } else if (item.name == "default") {
    configuration.default_board = value;
  } else {
    refuse(configuration.file, "\"" + item.name +
                                   "\" comes before the first [BOARD]; only "
                                   "default = BOARD is allowed there");
  }
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

Board board_named(const std::string& name, const Configuration& configuration) {
  const auto found = std::ranges::find(configuration.boards, name, &Board::name);
  if (found != configuration.boards.end()) return *found;
  std::vector<std::string_view> known;
  for (const Board& board : configuration.boards)
    known.emplace_back(board.name);
  std::string help = "it lists none";
  if (!known.empty()) {
    const auto near = pqclient::nearest_names(name, known);
    help = near.empty() ? "pqctl boards lists them" : "nearest: " + std::string(near.front());
  }
  throw Error(ErrorKind::kInput,
              "there is no board \"" + name + "\" in " + configuration.file + ": " + help);
}

Board board_at(const std::string& text) {
  return {.name = "",
          .address = pqclient::parse_address(text),
          .timeout_seconds = {},
          .is_read_only = false};
}

Board first_choice(const Options& options, const Configuration& configuration) {
  if (!options.host.empty()) return board_at(options.host);
  if (!options.board.empty()) return board_named(options.board, configuration);
  if (const std::string host = environment("PQCTL_HOST"); !host.empty()) return board_at(host);
  if (const std::string name = environment("PQCTL_BOARD"); !name.empty()) {
    return board_named(name, configuration);
  }
  if (options.port || configuration.default_board.empty()) return {};
  return board_named(configuration.default_board, configuration);
}

}  // namespace

std::string Board::text() const {
  return name.empty() ? address.text() : name + " (" + address.text() + ")";
}

Configuration read_configuration() {
  Configuration configuration;
  const auto folder = configuration_folder();
  configuration.file = folder / "boards.ini";
  if (folder.empty()) return configuration;
  std::ifstream file(configuration.file);
  if (!file.is_open()) {
    if (errno == ENOENT || errno == ENOTDIR) return configuration;
    throw file_error("read", configuration.file);
  }
  try {
    for (const CLI::ConfigItem& item : CLI::ConfigINI().from_config(file))
      apply(item, configuration);
  } catch (const CLI::Error& error) {
    refuse(configuration.file, error.what());
  }
  // A read error must not drop a read-only mark.
  if (file.bad()) throw file_error("read", configuration.file);
  return configuration;
}

Board choose_board(const Options& options, const Configuration& configuration) {
  Board board = first_choice(options, configuration);
  if (options.port) board.address.port = *options.port;
  const auto listed = std::ranges::find(configuration.boards, board.address, &Board::address);
  if (board.name.empty() && listed != configuration.boards.end()) board = *listed;
  return board;
}
