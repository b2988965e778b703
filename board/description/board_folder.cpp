// Apart from the parser: libraries that are preloaded into other programs need the folder, not
// JSON.
#include <cstdlib>

#include "description/description.h"

namespace board {

std::filesystem::path board_folder() {
  const char* folder = std::getenv("BOARD_DIR");
  return folder != nullptr ? folder : "/board";
}

}  // namespace board
