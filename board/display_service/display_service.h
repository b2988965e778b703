// The part of the board that owns the picture.
//
// As on a board, what a program sets on the display device (picture controls, gamma table) is seen
// with the next frame, while a new 3D table and the pattern wait for a redraw: on request, or
// because the pattern's application came or went. The service keeps what is seen in
// BOARD/screen/current.
#ifndef BOARD_DISPLAY_SERVICE_DISPLAY_SERVICE_H_
#define BOARD_DISPLAY_SERVICE_DISPLAY_SERVICE_H_

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "description/description.h"
#include "display_service/folder_watch.h"
#include "display_service/picture_dump.h"
#include "engine/parameters.h"
#include "properties/property_store.h"
#include "screen/picture.h"
#include "screen/screen_state.h"

namespace board::screen {

// Used by one thread.
class DisplayService {
 public:
  // The longest wait of a dump for the redraw that its requester asks for; after it, the dump shows
  // the screen as it is. Leaves three of the 4.2 seconds after which the daemon looks for the file.
  static constexpr std::chrono::milliseconds kRedrawWait{1000};

  // data_folder: where the daemon keeps its documents and expects the dumps,
  // /data/vendor/qxalgo on a board. Draws the screen for the first time.
  // Throws std::system_error when the board's folders cannot be watched.
  DisplayService(Description description, const std::filesystem::path& board_folder,
                 std::filesystem::path data_folder);

  // Waits for something to happen, at most for `timeout` (for ever without one), and acts on it.
  // Failures are logged and leave the screen as it was.
  void serve(std::optional<std::chrono::milliseconds> timeout);

 private:
  using Clock = std::chrono::steady_clock;

  void act_on(const FolderWatch::Event& event);
  void check_all_properties();
  void check_property(const std::string& name);
  void set_property(const std::string& name, const std::string& value) const;
  void read_announced_parameters();
  void redraw();
  void follow_device();
  void show(ScreenState state);
  void take_due_dumps(Clock::time_point now);
  void take_dump(DumpSide side);
  [[nodiscard]] std::optional<std::chrono::milliseconds> until_first_dump() const;

  const Description description_;
  const std::filesystem::path board_folder_;
  const std::filesystem::path data_folder_;
  const std::filesystem::path properties_folder_;
  const PropertyStore properties_;
  const Picture test_picture_;
  FolderWatch watch_;
  std::map<std::string, std::string> told_;      // values of the watched properties, as last seen
  std::map<DumpSide, Clock::time_point> due_;    // requested dumps, and when each waits no longer
  std::optional<engine::Parameters> announced_;  // the document's, at the last timeline change
  ScreenState on_screen_;
};

}  // namespace board::screen

#endif  // BOARD_DISPLAY_SERVICE_DISPLAY_SERVICE_H_
