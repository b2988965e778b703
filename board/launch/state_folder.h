// The folder that holds everything a simulated board writes:
//   data/ var/cache/ board/    what the board sees as /data, /var/cache and /board
//   board/drm/dri/             what it sees as /dev/dri
//   log                        what the daemon and its companions printed, unless on a terminal
//   lock                       locked as long as the board is up
#ifndef BOARD_LAUNCH_STATE_FOLDER_H_
#define BOARD_LAUNCH_STATE_FOLDER_H_

#include <filesystem>
#include <vector>

#include "description/description.h"

namespace board {

// A folder of the board's root and what stands for it on this machine.
struct Mount {
  std::filesystem::path on_board;
  std::filesystem::path on_host;
  bool writable;
};

class StateFolder {
 public:
  // path: created when missing, kept at the end. Empty: a temporary folder, removed at the end.
  // announced: whether a temporary folder is among the running_boards().
  // Throws std::runtime_error when it cannot be made or another board has it.
  StateFolder(const std::filesystem::path& path, bool announced);
  ~StateFolder();
  StateFolder(const StateFolder&) = delete;
  StateFolder& operator=(const StateFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::filesystem::path board() const {
    return path_ / "board";
  }  // see board_folder()

  // Brings the folder into the state that a board has after power-on: what a board keeps is kept,
  // what is missing is made as it leaves the factory. Throws std::runtime_error.
  void boot(const Description& description) const;

  [[nodiscard]] std::vector<Mount> mounts() const;

  // Where a board's file is on this machine. Throws std::runtime_error when no mount holds it.
  [[nodiscard]] std::filesystem::path file(const std::filesystem::path& on_board) const;

 private:
  void lock();
  void put_away();
  void publish(bool announced);

  std::filesystem::path path_;
  bool temporary_;
  int lock_ = -1;
};

// The temporary state folders of this user's announced boards that are up. A folder that is a link,
// of another user, or open to others' changes is none.
std::vector<std::filesystem::path> running_boards();

}  // namespace board

#endif  // BOARD_LAUNCH_STATE_FOLDER_H_
