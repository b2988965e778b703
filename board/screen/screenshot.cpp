#include "screen/screenshot.h"

#include <stdexcept>

#include "screen/pipeline.h"
#include "screen/png_file.h"
#include "screen/state_file.h"

namespace board::screen {

Size screen_size(const Description& description) {
  return {description.dump_width, description.dump_height};
}

void write_screenshot(const std::filesystem::path& board_folder,
                      const std::filesystem::path& file) {
  const std::filesystem::path state = state_file(board_folder);
  if (!std::filesystem::exists(state)) {
    throw std::runtime_error("the screen was not drawn yet (there is no " + state.string() +
                             "); is the board's display service running?");
  }
  const Size size = screen_size(read_description(board_folder / "description.json"));
  const ScreenState shown = read_state(state);
  write_png(Pipeline(shown).apply(screen_input(shown, size)), file);
}

}  // namespace board::screen
