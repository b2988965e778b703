// Where the display device lives below a board's folder, and the file that holds its state.
//
//   drm/state        the device's record, twice, and the blobs' data
//   drm/dri/card0    the device node's stand-in, an empty file; programs find it in /dev/dri
//
// A change writes the record that is not in use and then the number of the one to use, so a writer
// that is killed leaves the former state behind. It closes the file, which is what a watcher sees
// (inotify, IN_CLOSE_WRITE); reading leaves no trace.
#ifndef BOARD_DRM_DEVICE_FILE_H_
#define BOARD_DRM_DEVICE_FILE_H_

#include <cstdint>
#include <filesystem>
#include <vector>

#include "drm/device_record.h"
#include "files/file_descriptor.h"

namespace board::drm {

// The folder that the board's programs see as /dev/dri.
std::filesystem::path node_folder(const std::filesystem::path& board_folder);
std::filesystem::path node(const std::filesystem::path& board_folder);

// Makes the file, or starts an existing one anew, with this record and no blobs.
// Throws std::system_error.
void create_device_file(const std::filesystem::path& board_folder, const DeviceRecord& record);

// One hold on the device: no other DeviceFile of any process has it meanwhile. The lock is on an
// open file of its own, so it goes between threads too, and a process that is killed gives it back.
class DeviceFile {
 public:
  // Waits until nobody else has the device. Throws std::system_error, or std::runtime_error when
  // the file is not of this build.
  explicit DeviceFile(const std::filesystem::path& board_folder);

  [[nodiscard]] const DeviceRecord& record() const { return record_; }
  // Does nothing when the record is the stored one. Throws std::system_error; the stored one stays.
  void store(const DeviceRecord& record);

  // The bytes of the blob in a slot of the record.
  [[nodiscard]] std::vector<uint8_t> blob(size_t slot) const;
  // For a slot that is free in record(); at most kMaxBlob bytes. Counts with the next store().
  void write_blob(size_t slot, const std::vector<uint8_t>& data) const;

 private:
  std::filesystem::path path_;
  FileDescriptor file_;
  uint64_t in_use_ = 0;  // which of the two records
  DeviceRecord record_{};
};

}  // namespace board::drm

#endif  // BOARD_DRM_DEVICE_FILE_H_
