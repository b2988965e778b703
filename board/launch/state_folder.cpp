#include "launch/state_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <system_error>

#include "baseparameter/panel_defaults.h"
#include "baseparameter/parameter_store.h"
#include "drm/display_state.h"
#include "files/files.h"
#include "launch/installation.h"
#include "properties/property_store.h"

namespace board {
namespace {

namespace fs = std::filesystem;

constexpr int kRemovalAttempts = 10;

// A temporary folder's name tells whose board it is, and what it is for: a user is not offered a
// board that a test made.
constexpr std::string_view kAnnounced = "run";
constexpr std::string_view kUnannounced = "test";
constexpr std::string_view kUnlocked = "new";  // about to be locked and renamed

std::string prefix(std::string_view kind) {
  return "qxboard-" + std::string(kind) + "-" + std::to_string(::getuid()) + "-";
}

bool locked_by_a_board(const fs::path& folder) {
  const int lock = ::open((folder / "lock").c_str(), O_RDONLY | O_CLOEXEC);
  if (lock < 0) return false;
  const bool locked = ::flock(lock, LOCK_SH | LOCK_NB) != 0;
  ::close(lock);
  return locked;
}

// Anybody may make a folder of any name where temporary ones are. Ours alone are these: no link, of
// this user, and not to be changed by others.
bool is_own_folder(const fs::path& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::getuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::vector<fs::path> temporary_folders(std::string_view kind) {
  std::vector<fs::path> folders;
  for (const auto& entry : fs::directory_iterator(fs::temp_directory_path())) {
    const bool named = entry.path().filename().string().starts_with(prefix(kind));
    if (named && is_own_folder(entry.path())) folders.push_back(entry.path());
  }
  return folders;
}

// A board that was killed could not remove its folder; the next one does.
void remove_abandoned(std::string_view kind) {
  std::error_code ignored;
  for (const auto& folder : temporary_folders(kind)) {
    if (!locked_by_a_board(folder)) fs::remove_all(folder, ignored);
  }
}

// Also where it was killed before it had the lock. A younger folder may be about to get it.
void remove_unfinished() {
  constexpr std::chrono::minutes kMaxStart{1};
  std::error_code ignored;
  for (const auto& folder : temporary_folders(kUnlocked)) {
    const auto age = fs::file_time_type::clock::now() - fs::last_write_time(folder, ignored);
    if (age > kMaxStart && !locked_by_a_board(folder)) fs::remove_all(folder, ignored);
  }
}

fs::path make_temporary_folder() {
  std::string name = (fs::temp_directory_path() / (prefix(kUnlocked) + "XXXXXX")).string();
  if (::mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error("cannot make a temporary folder " + name + ": " +
                             std::strerror(errno));
  }
  return name;
}

void make_folder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (!error) return;
  throw std::runtime_error("cannot make the folder " + folder.string() + ": " + error.message());
}

void boot_store(const fs::path& folder, const Description& description) {
  if (description.store_empty || fs::exists(folder / "version")) return;
  ParameterStore(folder).seed(
      panel_defaults(description.store_version[0], description.store_version[1]));
}

void boot_properties(const fs::path& folder, const Description& description) {
  auto defaults = description.properties;
  defaults.emplace("ro.board.platform", description.platform);
  PropertyStore(folder).boot(defaults);
}

// The picture on the screen is lost when the power goes.
void boot_screen(const fs::path& folder) {
  fs::remove_all(folder);
  fs::create_directories(folder);
}

}  // namespace

StateFolder::StateFolder(const fs::path& path, bool announced) : temporary_(path.empty()) {
  path_ = temporary_ ? make_temporary_folder() : fs::absolute(path).lexically_normal();
  try {
    for (const char* folder : {"data/vendor/qxalgo", "var/cache", "board/properties",
                               "board/baseparameter", "board/screen"}) {
      make_folder(path_ / folder);
    }
    lock();
    if (temporary_) publish(announced);
  } catch (...) {
    put_away();
    throw;
  }
}

StateFolder::~StateFolder() {
  put_away();
}

// Another launcher that starts now may be putting the same folder away: each then stops at a file
// that the other has just removed.
void StateFolder::put_away() {
  std::error_code ignored;
  for (int i = 0; i < kRemovalAttempts && temporary_ && fs::exists(path_, ignored); ++i)
    fs::remove_all(path_, ignored);
  if (lock_ >= 0) ::close(lock_);
}

void StateFolder::lock() {
  const auto file = path_ / "lock";
  lock_ = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (lock_ >= 0 && ::flock(lock_, LOCK_EX | LOCK_NB) == 0) return;
  const int error = errno;
  throw std::runtime_error(error == EWOULDBLOCK
                               ? "another board is running with the state folder " + path_.string()
                               : "cannot lock " + file.string() + ": " + std::strerror(error));
}

void StateFolder::boot(const Description& description) const {
  replace_file_or_throw(board() / "description.json", to_json(description));
  create_display(board(), description);
  boot_store(board() / "baseparameter", description);
  boot_properties(board() / "properties", description);
  boot_screen(board() / "screen");
  replace_file_or_throw(board() / "data_space", std::to_string(description.data_size) + ' ' +
                                                    std::to_string(description.data_free) + '\n');
}

std::vector<Mount> StateFolder::mounts() const {
  return {{"/data", path_ / "data", true},
          {"/var/cache", path_ / "var/cache", true},
          {"/board", board(), true},
          {"/system/bin", program_folder(), false},
          {"/dev/dri", display_node_folder(board()), true}};
}

fs::path StateFolder::file(const fs::path& on_board) const {
  for (const auto& mount : mounts()) {
    const auto rest = on_board.lexically_normal().lexically_relative(mount.on_board);
    if (!rest.empty() && *rest.begin() != "..") return mount.on_host / rest;
  }
  throw std::runtime_error(on_board.string() + " is no path of the board");
}

// Only a locked folder has one of the names that others look for.
void StateFolder::publish(bool announced) {
  const auto kind = announced ? kAnnounced : kUnannounced;
  const std::string own = path_.filename().string().substr(prefix(kUnlocked).size());
  const fs::path published = path_.parent_path() / (prefix(kind) + own);
  fs::rename(path_, published);
  path_ = published;
  remove_abandoned(kind);
  remove_unfinished();
}

std::vector<fs::path> running_boards() {
  auto boards = temporary_folders(kAnnounced);
  std::erase_if(boards, [](const fs::path& folder) { return !locked_by_a_board(folder); });
  return boards;
}

}  // namespace board
