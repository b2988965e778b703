// One call's access to the device: it has the device's record to itself and knows which open file
// the call came through.
//
// Open files are told apart without any help from dup, fork or close: each takes a record lock of
// the open-file-description kind (F_OFD_SETLK) on one byte of the node, the byte at its number.
// The kernel keeps such a lock exactly as long as the open file lives. F_OFD_GETLK never reports a
// descriptor's own lock: a locked number that it calls free is that descriptor's. A number that
// nobody locks belonged to a file that was closed, or whose process died: what it held (blobs, DRM
// mastership) is taken back at the next call, whoever makes it.
#ifndef BOARD_DRM_PRELOAD_DEVICE_ACCESS_H_
#define BOARD_DRM_PRELOAD_DEVICE_ACCESS_H_

#include <cstddef>
#include <filesystem>

#include "drm/device_file.h"
#include "drm/device_record.h"

namespace board::drm {

class DeviceAccess {
 public:
  // Waits until no other call is at work; stores what changed in the list of open files. Throws
  // std::system_error: ENODEV when there is no usable state, the description's errno when opening
  // has to fail, or the error of a file call.
  DeviceAccess(const std::filesystem::path& board_folder, int descriptor);

  // Runs `request` on record(), which is stored when the result is 0 and left as it was when the
  // result is a negative errno.
  template <typename Request>
  int run(Request request) {
    const int result = request();
    if (result < 0) {
      record_ = stored_.record();
    } else {
      record_.drop_unused_blobs();
      stored_.store(record_);
    }
    return result;
  }

  DeviceRecord& record() { return record_; }
  OpenFile& file() { return record_.open_files[file_]; }
  [[nodiscard]] const DeviceFile& stored() const { return stored_; }

 private:
  void close_abandoned_files(const std::filesystem::path& node);
  size_t find_or_register_file(int descriptor);
  [[nodiscard]] bool has_master() const;

  DeviceFile stored_;
  DeviceRecord record_;
  size_t file_ = 0;  // place in record_.open_files
};

}  // namespace board::drm

#endif  // BOARD_DRM_PRELOAD_DEVICE_ACCESS_H_
