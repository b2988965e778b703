// One call's hold on the device: it loads the state, knows which open file the call came through,
// and stores the state again.
//
// The lock is a flock on a description of its own of the device node, so it holds between threads
// as well as between processes, and a process that is killed gives it back.
//
// Open files are told apart without any help from dup, fork or close: each takes a record lock of
// the open-file-description kind (F_OFD_SETLK) on one byte of the node, the byte at its number.
// The kernel keeps such a lock exactly as long as the open file lives. So the number that is
// locked, but not against the descriptor at hand, is that descriptor's; and a number that is
// locked by nobody belonged to a file that was closed, or whose process died: what it held (blobs,
// DRM mastership) is taken back at the next call, whoever makes it.
#ifndef BOARD_DRM_PRELOAD_SESSION_H_
#define BOARD_DRM_PRELOAD_SESSION_H_

#include <cstdint>
#include <filesystem>
#include <vector>

#include "drm/device_state.h"
#include "drm/file_descriptor.h"

namespace board::drm {

class Session {
 public:
  // Waits until no other call is at work. Throws std::system_error: ENODEV when there is no
  // readable state, the description's errno when opening is to fail, or what a file call answered.
  Session(const std::filesystem::path& board_folder, int descriptor);

  DeviceState& state() { return state_; }
  OpenFile& file();
  // Stores the state if it differs from the stored one. Without it, all changes are dropped.
  void store();

 private:
  void close_abandoned_files();
  void find_or_register_file();
  void register_file();

  std::filesystem::path board_folder_;
  int descriptor_;
  FileDescriptor lock_;  // of the whole device; its description owns no number
  std::vector<uint8_t> image_;
  DeviceState state_;
  uint64_t file_number_ = 0;
};

}  // namespace board::drm

#endif  // BOARD_DRM_PRELOAD_SESSION_H_
