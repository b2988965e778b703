// Notices files that other programs put into folders.
#ifndef BOARD_DISPLAY_SERVICE_FOLDER_WATCH_H_
#define BOARD_DISPLAY_SERVICE_FOLDER_WATCH_H_

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace board::screen {

// Used by one thread.
class FolderWatch {
 public:
  struct Event {
    std::filesystem::path folder;
    std::string name;  // of the file; empty: events were lost, everything may have changed
  };

  // Throws std::system_error when the kernel gives no watch.
  FolderWatch();
  ~FolderWatch();
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;

  // Creates the folder where it is missing. Throws std::system_error.
  void add(const std::filesystem::path& folder);

  // Files that were written, renamed into place or removed since the last call, in this order;
  // hidden ones, which are side files of a write under way, are left out. Waits for the first one,
  // without a time-out for ever; an empty result means that the time is over.
  std::vector<Event> wait(std::optional<std::chrono::milliseconds> timeout);

 private:
  int descriptor_;
  std::map<int, std::filesystem::path> folders_;  // by watch descriptor
};

}  // namespace board::screen

#endif  // BOARD_DISPLAY_SERVICE_FOLDER_WATCH_H_
