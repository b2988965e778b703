// The simulated display service: started by the board's launcher, runs until it is killed.
#include <cstdio>
#include <exception>
#include <optional>

#include "description/description.h"
#include "display_service/display_service.h"

int main() {
  try {
    const std::filesystem::path folder = board::board_folder();
    board::screen::DisplayService service(board::read_description(folder / "description.json"),
                                          folder, "/data/vendor/qxalgo");
    for (;;)
      service.serve(std::nullopt);
  } catch (const std::exception& error) {
    (void)std::fprintf(stderr, "display_service: %s\n", error.what());
    return 1;
  }
}
