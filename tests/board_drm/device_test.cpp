// What hardware a client sees, and how opening goes.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "board_drm/device.h"

namespace {

TEST_F(DisplayDevice, ConnectorsAreLitUnpluggedDarkOrWithoutAnEncoder) {
  boot([](auto& board) {
    board.connectors = {{.type = DRM_MODE_CONNECTOR_HDMIA, .connected = false},
                        {.type_id = 2},
                        {.type = DRM_MODE_CONNECTOR_DSI, .lit = false},
                        {.type = 20, .has_encoder = false}};
  });
  struct Seen {
    uint32_t type, type_id;
    drmModeConnection connection;
    int encoders, modes;
  };
  const Seen all_seen[] = {{DRM_MODE_CONNECTOR_HDMIA, 1, DRM_MODE_DISCONNECTED, 1, 0},
                           {DRM_MODE_CONNECTOR_eDP, 2, DRM_MODE_CONNECTED, 1, 1},
                           {DRM_MODE_CONNECTOR_DSI, 1, DRM_MODE_CONNECTED, 1, 0},
                           {20, 1, DRM_MODE_CONNECTED, 0, 0}};
  const Device device;
  int index = 0;
  for (const Seen& seen : all_seen) {
    const ConnectorPtr connector = device.connector(index);
    ASSERT_NE(nullptr, connector) << "connector " << index;
    EXPECT_EQ(seen.type, connector->connector_type);
    EXPECT_EQ(seen.type_id, connector->connector_type_id);
    EXPECT_EQ(seen.connection, connector->connection);
    EXPECT_EQ(seen.encoders, connector->count_encoders);
    EXPECT_EQ(seen.modes, connector->count_modes);
    EXPECT_EQ(seen.modes > 0, device.crtc_id(index) != 0);
    ++index;
  }
  EXPECT_EQ(nullptr, device.connector(index));
}

TEST_F(DisplayDevice, ACrtcOfNoIdHasNoProperties) {
  const Device device;
  EXPECT_EQ(nullptr,
            PropertiesPtr(drmModeObjectGetProperties(device.descriptor, 0, DRM_MODE_OBJECT_CRTC)));
  EXPECT_EQ(ENOENT, errno);
}

TEST_F(DisplayDevice, FailingOpenAnswersItsErrno) {
  boot([](auto& board) { board.faults.open_errno = EACCES; });
  EXPECT_EQ(-1, Device().descriptor);
  EXPECT_EQ(-1, ::open("/dev/dri/card0", O_RDWR));
  EXPECT_EQ(EACCES, errno);
}

TEST_F(DisplayDevice, OpeningByNamePassesOverADeviceWithABusId) {
  boot([](auto& board) { board.faults.bus_id = true; });
  EXPECT_EQ(-1, Device().descriptor);
  const Device by_path(::open("/dev/dri/card0", O_RDWR | O_CLOEXEC));
  EXPECT_NE(0U, by_path.crtc_id(0));
}

}  // namespace
