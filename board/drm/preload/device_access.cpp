#include "drm/preload/device_access.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <system_error>

namespace board::drm {
namespace {

[[noreturn]] void fail(int error) {
  throw std::system_error(error, std::generic_category());
}

struct flock byte_lock(uint64_t number, short type) {
  struct flock lock = {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = static_cast<off_t>(number);
  lock.l_len = 1;
  return lock;
}

// True if an open file other than the descriptor's holds the number.
bool held_by_another(int descriptor, uint64_t number) {
  struct flock lock = byte_lock(number, F_WRLCK);
  if (::fcntl(descriptor, F_OFD_GETLK, &lock) != 0) fail(errno);
  return lock.l_type != F_UNLCK;
}

void hold(int descriptor, uint64_t number) {
  // A lock for writing needs a descriptor open for writing; for telling files apart either serves.
  const bool writable = (::fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY;
  struct flock lock = byte_lock(number, static_cast<short>(writable ? F_WRLCK : F_RDLCK));
  if (::fcntl(descriptor, F_OFD_SETLK, &lock) != 0) fail(errno);
}

DeviceFile open_device(const std::filesystem::path& board_folder) try {
  return DeviceFile(board_folder);
} catch (const std::exception& error) {
  ::dprintf(STDERR_FILENO, "simulated display device: no state: %s; power the board on again\n",
            error.what());
  fail(ENODEV);
}

}  // namespace

DeviceAccess::DeviceAccess(const std::filesystem::path& board_folder, int descriptor)
    : stored_(open_device(board_folder)), record_(stored_.record()) {
  close_abandoned_files(node(board_folder));
  file_ = find_or_register_file(descriptor);
  stored_.store(record_);
}

void DeviceAccess::close_abandoned_files(const std::filesystem::path& node) {
  // A description of its own, which holds no number.
  const FileDescriptor other(::openat(AT_FDCWD, node.c_str(), O_RDWR | O_CLOEXEC));
  if (!other.valid()) fail(errno);
  for (OpenFile& file : record_.open_files) {
    if (file.number == 0 || held_by_another(other.get(), file.number)) continue;
    for (Blob& blob : record_.blobs) {
      if (blob.owner == file.number) blob.owner = 0;
    }
    file = {};
  }
  record_.drop_unused_blobs();
}

bool DeviceAccess::has_master() const {
  return record_.settings.other_master != 0 ||
         std::ranges::any_of(record_.open_files, [](const auto& file) { return file.master != 0; });
}

size_t DeviceAccess::find_or_register_file(int descriptor) {
  auto& files = record_.open_files;
  const auto place = [&files](auto found) { return static_cast<size_t>(found - files.begin()); };
  const auto known = std::ranges::find_if(files, [descriptor](const OpenFile& file) {
    return file.number != 0 && !held_by_another(descriptor, file.number);
  });
  if (known != files.end()) return place(known);

  if (record_.settings.open_errno != 0) fail(record_.settings.open_errno);
  const auto free = std::ranges::find(files, uint64_t{0}, &OpenFile::number);
  if (free == files.end()) fail(ENFILE);
  // A file from before a restart of the board may still hold a number that counts anew.
  do {
    ++record_.last_file_number;
  } while (held_by_another(descriptor, record_.last_file_number));
  hold(descriptor, record_.last_file_number);
  // The first to open the device while it has no master becomes it.
  *free = {record_.last_file_number, 0, has_master() ? 0U : 1U};
  return place(free);
}

}  // namespace board::drm
