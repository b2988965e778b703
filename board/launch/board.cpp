#include "launch/board.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <utility>

#include "files/files.h"
#include "launch/installation.h"
#include "launch/listening.h"
#include "properties/property_store.h"

namespace board {
namespace {

namespace fs = std::filesystem;

constexpr Board::Milliseconds kPollStep{5};

// Asks again and again until the answer is yes or the time is over.
bool wait_until(Board::Milliseconds timeout, const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(kPollStep);
  }
  return true;
}

constexpr const char* kProfileVariable = "LLVM_PROFILE_FILE";

std::string joined(const std::vector<fs::path>& paths, char separator) {
  std::string text;
  for (const auto& path : paths)
    text += (text.empty() ? "" : std::string(1, separator)) + path.string();
  return text;
}

void keep_from_caller(std::map<std::string, std::string>& environment, const char* name) {
  if (const char* value = std::getenv(name)) environment[name] = value;
}

}  // namespace

Board::Board(const std::string& name_or_file, BoardOptions options)
    : Board(read_description(description_file(name_or_file)), std::move(options)) {}

Board::Board(Description description, BoardOptions options)
    : description_(std::move(description)),
      options_(std::move(options)),
      isolation_(choose_isolation(options_.isolation)),
      state_(options_.state, options_.announced) {
  if (options_.daemon.empty()) options_.daemon = daemon_program();
  // Without links: bubblewrap, from 0.11 on, shows no file where the private root has a link
  // already, as it has at /bin.
  options_.daemon = fs::weakly_canonical(options_.daemon);
  state_.boot(description_);
  // A state folder of the user's own may hold a file of that name.
  if (!options_.log_to_terminal) fs::remove(state_.path() / "log");
}

Board::~Board() = default;

void Board::start() {
  if (session_) throw std::runtime_error("the daemon runs already");
  if (::access(options_.daemon.c_str(), X_OK) != 0) {
    throw std::runtime_error("cannot run the daemon " + options_.daemon.string() + ": " +
                             std::strerror(errno) + " (is it built?)");
  }
  log_at_start_ = log().size();
  if (!options_.log_to_terminal) {
    log_file_ = FileDescriptor(
        ::open((state_.path() / "log").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
  }
  std::vector<std::string> daemon{options_.daemon};
  daemon.insert(daemon.end(), options_.arguments.begin(), options_.arguments.end());
  try {
    session_ = std::make_unique<Session>(
        Session::Options{container(), daemon, companions(), daemon_environment(),
                         options_.log_to_terminal ? STDERR_FILENO : log_file_.get()});
  } catch (const std::exception& error) {
    if (options_.log_to_terminal) throw;
    throw std::runtime_error(std::string(error.what()) + "\n" + log());
  }
}

int Board::stop(int signal, Milliseconds timeout) {
  if (!session_) throw std::runtime_error("the daemon does not run");
  session_->signal(signal);
  const auto status = wait(timeout);
  if (!status) {
    session_.reset();
    throw std::runtime_error("the daemon did not end within " + std::to_string(timeout.count()) +
                             " ms after signal " + std::to_string(signal) + " and was killed");
  }
  return *status;
}

int Board::restart(int signal) {
  const int status = stop(signal);
  start();
  return status;
}

std::optional<int> Board::wait(Milliseconds timeout) {
  if (!session_) throw std::runtime_error("the daemon does not run");
  const auto status = session_->wait(timeout);
  if (status) session_.reset();
  return status;
}

void Board::signal(int number) {
  if (session_) session_->signal(number);
}

pid_t Board::daemon_pid() const {
  if (!session_) throw std::runtime_error("the daemon does not run");
  return session_->daemon_pid();
}

bool Board::wait_until_listening(uint16_t port, Milliseconds timeout) {
  const auto over = [&] { return !session_ || session_->wait(Milliseconds(0)); };
  wait_until(timeout, [&] { return listening(port) || over(); });
  return listening(port);
}

std::optional<std::string> Board::property(std::string_view name) const {
  return PropertyStore(file("/board/properties")).get(name);
}

void Board::set_property(std::string_view name, std::string_view value) const {
  const int result = PropertyStore(file("/board/properties")).set(name, value);
  if (result != 0) throw std::runtime_error(PropertyStore::refusal(name, value, result));
}

fs::path Board::file(const fs::path& path_on_board) const {
  return state_.file(path_on_board);
}

std::string Board::read(const fs::path& path_on_board) const {
  auto content = read_file(file(path_on_board));
  if (!content) throw std::runtime_error("cannot read " + path_on_board.string());
  return *std::move(content);
}

void Board::write(const fs::path& path_on_board, std::string_view content) const {
  const auto path = file(path_on_board);
  fs::create_directories(path.parent_path());
  std::ofstream stream(path, std::ios::binary);
  if (!(stream << content << std::flush)) {
    throw std::runtime_error("cannot write " + path_on_board.string());
  }
}

std::string Board::log() const {
  return read_file(state_.path() / "log").value_or("");
}

bool Board::wait_for_log(std::string_view text, Milliseconds timeout) {
  return wait_until(timeout, [&] { return log().find(text, log_at_start_) != std::string::npos; });
}

std::vector<std::string> Board::calls() const {
  std::istringstream record(read_file(file("/board/calls")).value_or(""));
  std::vector<std::string> lines;
  for (std::string line; std::getline(record, line);) {
    lines.push_back(line.substr(line.find(' ') + 1));
  }
  return lines;
}

std::vector<fs::path> Board::companions() const {
  auto programs = companion_programs();
  programs.insert(programs.end(), options_.companions.begin(), options_.companions.end());
  return programs;
}

Container Board::container() const {
  // The daemon by itself too: a test may start it from a shell.
  std::vector<fs::path> visible{installation_folder(), daemon_program(), options_.daemon};
  visible.insert(visible.end(), options_.libraries.begin(), options_.libraries.end());
  const auto beside = companions();
  visible.insert(visible.end(), beside.begin(), beside.end());
  auto mounts = state_.mounts();
  // Where a build that counts executed lines (tools/coverage) leaves its counts.
  if (const char* profile = std::getenv(kProfileVariable)) {
    const auto folder = fs::path(profile).parent_path();
    mounts.push_back({folder, folder, true});
  }
  return make_container(isolation_, mounts, visible);
}

std::vector<std::string> Board::daemon_environment() const {
  std::map<std::string, std::string> environment;
  for (const char* name :
       {"TZ", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS", kProfileVariable}) {
    keep_from_caller(environment, name);
  }
  // The sanitizer's runtime comes after what the board preloads, and need not mind.
  keep_from_caller(environment, "ASAN_OPTIONS");
  environment["ASAN_OPTIONS"] += ":verify_asan_link_order=0";
  // The leak check traces the process, which proot does already.
  if (isolation_ == Isolation::kProot) environment["ASAN_OPTIONS"] += ":detect_leaks=0";

  auto libraries = options_.libraries;
  libraries.push_back(library_folder());
  const auto engine = engine_folder(description_.engine);
  if (!engine.empty()) libraries.push_back(engine);
  environment["LD_LIBRARY_PATH"] = joined(libraries, ':');
  auto preloaded = preload_libraries();
  if (isolation_ == Isolation::kProot) preloaded.push_back(proot_workarounds_library());
  if (options_.hurry > 1) {
    preloaded.push_back(quick_clock_library());
    environment["BOARD_HURRY"] = std::to_string(options_.hurry);
  }
  if (!preloaded.empty()) environment["LD_PRELOAD"] = joined(preloaded, ':');
  environment["PATH"] = "/system/bin:/usr/bin:/bin";
  for (const auto& [name, value] : options_.environment)
    environment[name] = value;

  std::vector<std::string> settings;
  for (const auto& [name, value] : environment)
    settings.push_back(name + "=" + value);
  return settings;
}

}  // namespace board
