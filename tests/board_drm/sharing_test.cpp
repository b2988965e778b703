// Several open files and processes at one device.
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "board_drm/device.h"
#include "drm/state_file.h"

namespace {

class Sharing : public DisplayDevice {};

// Killed in the middle of whatever it does: what it held is given back, and what it wrote is whole.
TEST_F(Sharing, AKilledClientLeavesAWorkingDevice) {
  for (int round = 0; round < 20; ++round) {
    const pid_t child = ::fork();
    if (child == 0) {
      const Device device;
      for (uint16_t value = 0;; ++value) {
        device.load_gamma(device.crtc_id(0), 1024, value);
        device.gamma_blob(16);
      }
    }
    ::usleep(static_cast<useconds_t>(2000 + 700 * round));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    const Device device;
    EXPECT_EQ(0, device.load_gamma(device.crtc_id(0), 1024)) << "master again";
    EXPECT_EQ(2U, state().blobs);
  }
}

TEST_F(Sharing, AStateFileCutAnywhereIsRefused) {
  std::vector<uint8_t> image = board::drm::read_image(board::board_folder());
  while (!image.empty()) {
    image.pop_back();
    EXPECT_THROW(board::drm::decode(image), std::runtime_error) << image.size() << " bytes";
  }
  board::drm::write_image(board::board_folder(), image);
  EXPECT_EQ(-1, Device().descriptor);
  EXPECT_THROW(description(), std::runtime_error);
}

}  // namespace
