#include "drm/device_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace board::drm {
namespace {

struct Layout {
  uint64_t in_use;
  DeviceRecord records[2];
  uint8_t blobs[kMaxBlobs][kMaxBlob];
};

std::filesystem::path state_path(const std::filesystem::path& board_folder) {
  return board_folder / "drm" / "state";
}

[[noreturn]] void fail(const std::filesystem::path& path) {
  throw std::system_error(errno, std::generic_category(), path.string());
}

// Through openat: open is what the preloaded library replaces.
FileDescriptor open_file(const std::filesystem::path& path, int flags) {
  FileDescriptor file(::openat(AT_FDCWD, path.c_str(), flags | O_CLOEXEC, 0644));
  if (!file.valid()) fail(path);
  return file;
}

FileDescriptor open_locked(const std::filesystem::path& path) {
  FileDescriptor file = open_file(path, O_RDONLY);
  while (::flock(file.get(), LOCK_EX) != 0) {
    if (errno != EINTR) fail(path);
  }
  return file;
}

void read_at(const FileDescriptor& file, void* data, size_t size, size_t place) {
  auto* bytes = static_cast<uint8_t*>(data);
  while (size > 0) {
    const ssize_t count = ::pread(file.get(), bytes, size, static_cast<off_t>(place));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw std::system_error(errno, std::generic_category());
    if (count == 0) throw std::runtime_error("the display device's state is cut short");
    bytes += count;
    place += static_cast<size_t>(count);
    size -= static_cast<size_t>(count);
  }
}

void write_at(const FileDescriptor& file, const void* data, size_t size, size_t place) {
  const auto* bytes = static_cast<const uint8_t*>(data);
  while (size > 0) {
    const ssize_t count = ::pwrite(file.get(), bytes, size, static_cast<off_t>(place));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw std::system_error(errno, std::generic_category());
    bytes += count;
    place += static_cast<size_t>(count);
    size -= static_cast<size_t>(count);
  }
}

size_t place_of_record(uint64_t which) {
  return offsetof(Layout, records) + which * sizeof(DeviceRecord);
}

size_t place_of_blob(size_t slot) {
  return offsetof(Layout, blobs) + slot * kMaxBlob;
}

void write_record(const std::filesystem::path& path, const DeviceRecord& record, uint64_t which) {
  const FileDescriptor file = open_file(path, O_WRONLY);
  write_at(file, &record, sizeof(record), place_of_record(which));
  write_at(file, &which, sizeof(which), offsetof(Layout, in_use));
}

}  // namespace

std::filesystem::path node_folder(const std::filesystem::path& board_folder) {
  return board_folder / "drm" / "dri";
}

std::filesystem::path node(const std::filesystem::path& board_folder) {
  return node_folder(board_folder) / "card0";
}

void create_device_file(const std::filesystem::path& board_folder, const DeviceRecord& record) {
  const auto path = state_path(board_folder);
  // Programs of an earlier power-on may still hold the file; it stays the one that they see.
  const FileDescriptor file = open_file(path, O_RDWR | O_CREAT);
  if (::ftruncate(file.get(), sizeof(Layout)) != 0) fail(path);
  write_record(path, record, 0);
}

DeviceFile::DeviceFile(const std::filesystem::path& board_folder)
    : path_(state_path(board_folder)), file_(open_locked(path_)) {
  read_at(file_, &in_use_, sizeof(in_use_), offsetof(Layout, in_use));
  if (in_use_ <= 1) read_at(file_, &record_, sizeof(record_), place_of_record(in_use_));
  if (record_.mark != kRecordMark || record_.settings.output_count > kMaxConnectors) {
    throw std::runtime_error("the display device's state is not of this build");
  }
}

void DeviceFile::store(const DeviceRecord& record) {
  if (std::memcmp(&record, &record_, sizeof(record)) == 0) return;
  write_record(path_, record, 1 - in_use_);
  in_use_ = 1 - in_use_;
  record_ = record;
}

std::vector<uint8_t> DeviceFile::blob(size_t slot) const {
  std::vector<uint8_t> data(record_.blobs[slot].size);
  read_at(file_, data.data(), data.size(), place_of_blob(slot));
  return data;
}

void DeviceFile::write_blob(size_t slot, const std::vector<uint8_t>& data) const {
  write_at(open_file(path_, O_WRONLY), data.data(), data.size(), place_of_blob(slot));
}

}  // namespace board::drm
