// drminfo [BOARD_FOLDER]: shows the simulated display device's state.
#include <iostream>

#include "drm/display_state.h"

int main(int argc, char** argv) {
  const std::filesystem::path folder = argc > 1 ? argv[1] : board::board_folder();
  std::cout << board::describe_display(folder);
  return 0;
}
