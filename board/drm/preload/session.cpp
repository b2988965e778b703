#include "drm/preload/session.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <system_error>
#include <utility>

#include "drm/preload/next.h"
#include "drm/state_file.h"

namespace board::drm {
namespace {

[[noreturn]] void fail(int error) {
  throw std::system_error(error, std::generic_category());
}

FileDescriptor lock_device(const std::filesystem::path& board_folder) {
  // Not through our own open, which would come back here.
  FileDescriptor file(next_open(node(board_folder).c_str(), O_RDWR | O_CLOEXEC, 0));
  if (file.get() < 0) fail(errno);
  while (::flock(file.get(), LOCK_EX) != 0) {
    if (errno != EINTR) fail(errno);
  }
  return file;
}

struct flock byte_lock(uint64_t number, short type) {
  struct flock lock = {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = static_cast<off_t>(number);
  lock.l_len = 1;
  return lock;
}

// Whether another open file than the descriptor's holds the number.
bool held_by_another(int descriptor, uint64_t number) {
  struct flock lock = byte_lock(number, F_WRLCK);
  if (::fcntl(descriptor, F_OFD_GETLK, &lock) != 0) fail(errno);
  return lock.l_type != F_UNLCK;
}

bool hold(int descriptor, uint64_t number) {
  // A lock for writing needs a descriptor open for writing; for telling files apart either serves.
  const bool writable = (::fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY;
  struct flock lock = byte_lock(number, static_cast<short>(writable ? F_WRLCK : F_RDLCK));
  return ::fcntl(descriptor, F_OFD_SETLK, &lock) == 0;
}

DeviceState decode_or_fail(const std::vector<uint8_t>& image) try {
  return decode(image);
} catch (const std::runtime_error& error) {
  ::dprintf(STDERR_FILENO, "simulated display device: %s; boot the board anew\n", error.what());
  fail(ENODEV);
}

std::vector<uint8_t> read_image_or_fail(const std::filesystem::path& board_folder) try {
  return read_image(board_folder);
} catch (const std::system_error& error) {
  ::dprintf(STDERR_FILENO, "simulated display device: no state: %s\n", error.what());
  fail(ENODEV);
}

}  // namespace

Session::Session(const std::filesystem::path& board_folder, int descriptor)
    : board_folder_(board_folder),
      descriptor_(descriptor),
      lock_(lock_device(board_folder)),
      image_(read_image_or_fail(board_folder)),
      state_(decode_or_fail(image_)) {
  close_abandoned_files();
  find_or_register_file();
}

OpenFile& Session::file() {
  return *std::ranges::find(state_.open_files, file_number_, &OpenFile::number);
}

void Session::store() {
  std::vector<uint8_t> image = encode(state_);
  if (image == image_) return;
  write_image(board_folder_, image);
  image_ = std::move(image);
}

void Session::close_abandoned_files() {
  std::erase_if(state_.open_files, [this](const OpenFile& file) {
    if (held_by_another(lock_.get(), file.number)) return false;
    for (Blob& blob : state_.blobs) {
      if (blob.owner == file.number) blob.owner = 0;
    }
    return true;
  });
  state_.drop_unused_blobs();
}

void Session::find_or_register_file() {
  for (const OpenFile& file : state_.open_files) {
    if (!held_by_another(descriptor_, file.number)) {
      file_number_ = file.number;
      return;
    }
  }
  register_file();
}

void Session::register_file() {
  if (state_.settings.open_errno != 0) fail(state_.settings.open_errno);
  OpenFile file;
  // A file from before a restart of the board may still hold a number that counts anew.
  do {
    file.number = ++state_.last_file_number;
  } while (held_by_another(descriptor_, file.number));
  if (!hold(descriptor_, file.number)) fail(errno);
  // Whoever opens the device while nobody is master becomes it.
  const bool first = state_.master() == nullptr && state_.settings.other_master == 0;
  file.master = first ? 1 : 0;
  file.was_master = file.master;
  state_.open_files.push_back(file);
  file_number_ = file.number;
}

}  // namespace board::drm
