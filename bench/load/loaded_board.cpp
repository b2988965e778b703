#include "load/loaded_board.h"

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <vector>

#include "launch/installation.h"
#include "pqclient/packets.h"

namespace load {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

board::Description description() {
  auto result = board::read_description(board::description_file("tv"));
  result.dump_width = 64;
  result.dump_height = 32;
  result.properties["persist.vendor.aiqtool.log"] = "0";
  return result;
}

board::BoardOptions board_options(const LoadedBoard::Options& options) {
  board::BoardOptions result;
  result.hurry = options.hurry;
  if (!options.shell_setup.empty()) {
    result.daemon = "/bin/sh";
    result.arguments = {"-c", options.shell_setup + "; exec \"$0\"",
                        board::daemon_program().string()};
  }
  return result;
}

}  // namespace

LoadedBoard::LoadedBoard(const Options& options) : board_(description(), board_options(options)) {
  start();
}

void LoadedBoard::start() {
  board_.start();
  if (!board_.wait_until_listening(pqclient::kDefaultPort)) {
    throw std::runtime_error("the daemon does not listen:\n" + board_.log());
  }
}

void LoadedBoard::stop() {
  const int status = board_.stop();
  if (status == 0) return;
  throw std::runtime_error("the daemon ended with " + std::to_string(status) + ":\n" +
                           board_.log());
}

ProcessFigures LoadedBoard::settled(size_t threads) const {
  const auto end = std::chrono::steady_clock::now() + 10s;
  ProcessFigures now = figures();
  while (now.threads > threads && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(50ms);
    now = figures();
  }
  return now;
}

ProcessFigures LoadedBoard::at_rest(size_t threads) const {
  (void)settled(threads);
  std::this_thread::sleep_for(2500ms);
  return figures();
}

void LoadedBoard::remove_lut_files() {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(board_.file("/data"))) {
    if (entry.path().extension() == ".cube") files.push_back(entry.path());
  }
  for (const auto& file : files)
    fs::remove(file);
}

}  // namespace load
