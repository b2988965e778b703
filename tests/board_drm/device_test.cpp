// What hardware a client sees, and how opening goes.
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ostream>

#include "board_drm/device.h"

namespace {

struct Seen {
  uint32_t type, type_id;
  drmModeConnection connection;
  bool has_encoder, lit;
};
struct Hardware {
  const char* name;
  std::vector<board::Connector> connectors;
  std::vector<Seen> seen;
  const char* shown;  // to somebody who looks at the board without a configured primary
};
void PrintTo(const Hardware& hardware, std::ostream* out) {
  *out << hardware.name;
}

constexpr uint32_t kHdmi = DRM_MODE_CONNECTOR_HDMIA;
constexpr uint32_t kEdp = DRM_MODE_CONNECTOR_eDP;
constexpr uint32_t kDsi = DRM_MODE_CONNECTOR_DSI;
constexpr drmModeConnection kOn = DRM_MODE_CONNECTED;
constexpr drmModeConnection kOff = DRM_MODE_DISCONNECTED;

class Boards : public DisplayDevice, public testing::WithParamInterface<Hardware> {};

TEST_P(Boards, ShowTheirConnectorsToLibdrm) {
  boot([](auto& board) { board.connectors = GetParam().connectors; });
  const Device device;
  const std::vector<Seen>& seen = GetParam().seen;
  for (int i = 0; i < static_cast<int>(seen.size()); ++i) {
    const ConnectorPtr connector = device.connector(i);
    ASSERT_NE(nullptr, connector) << "connector " << i;
    EXPECT_EQ(seen[i].type, connector->connector_type);
    EXPECT_EQ(seen[i].type_id, connector->connector_type_id);
    EXPECT_EQ(seen[i].connection, connector->connection);
    EXPECT_EQ(seen[i].has_encoder ? 1 : 0, connector->count_encoders);
    EXPECT_EQ(seen[i].lit, device.crtc_id(i) != 0);
    EXPECT_EQ(seen[i].lit ? 1 : 0, connector->count_modes);
  }
  EXPECT_EQ(nullptr, device.connector(static_cast<int>(seen.size())));
  const board::DisplayState now = state();
  const board::DisplayConnector* shown = board::shown_connector(now, "");
  EXPECT_EQ(GetParam().shown, shown != nullptr ? shown->name : "nothing");
}

INSTANTIATE_TEST_SUITE_P(
    , Boards,
    testing::Values(
        Hardware{"panel_and_hdmi",
                 {{.type = kHdmi}, {.type = kEdp}},
                 {{kHdmi, 1, kOn, true, true}, {kEdp, 1, kOn, true, true}},
                 "eDP-1"},
        Hardware{"hdmi_unplugged",
                 {{.type = kHdmi, .connected = false}, {.type = kDsi}},
                 {{kHdmi, 1, kOff, true, false}, {kDsi, 1, kOn, true, true}},
                 "DSI-1"},
        Hardware{"two_of_a_type",
                 {{.type = kHdmi}, {.type = kHdmi, .type_id = 2}},
                 {{kHdmi, 1, kOn, true, true}, {kHdmi, 2, kOn, true, true}},
                 "HDMI-A-1"},
        Hardware{"dark_panel", {{.lit = false}}, {{kEdp, 1, kOn, true, false}}, "eDP-1"},
        Hardware{"no_encoder", {{.has_encoder = false}}, {{kEdp, 1, kOn, false, false}}, "eDP-1"},
        Hardware{"nameless_type", {{.type = 20}}, {{20, 1, kOn, true, true}}, "type20-1"},
        Hardware{"no_connector", {}, {}, "nothing"}),
    [](const auto& test) { return test.param.name; });

TEST_F(DisplayDevice, TheConfiguredConnectorIsShownWhileItIsConnected) {
  boot([](auto& board) {
    board.connectors = {{.type = kEdp}, {.type = kHdmi}, {.type = kDsi, .connected = false}};
  });
  const board::DisplayState now = state();
  EXPECT_EQ("HDMI-A-1", board::shown_connector(now, "HDMI-A-1")->name);
  EXPECT_EQ("HDMI-A-1", board::shown_connector(now, "HDMI-A")->name);
  EXPECT_EQ("eDP-1", board::shown_connector(now, "DSI")->name);
}

// A client that takes the connector's index for the CRTC's loads the other display's table.
TEST_F(DisplayDevice, CrtcsAreNotInTheOrderOfConnectors) {
  boot([](auto& board) { board.connectors = {{.type = kEdp}, {.type = kHdmi}}; });
  const Device device;
  const Resources resources(drmModeGetResources(device.descriptor));
  EXPECT_EQ(resources->crtcs[1], device.crtc_id(0));
  EXPECT_EQ(resources->crtcs[0], device.crtc_id(1));
}

TEST_F(DisplayDevice, ACrtcOfNoIdHasNoProperties) {
  const Device device;
  EXPECT_EQ(nullptr,
            PropertiesPtr(drmModeObjectGetProperties(device.descriptor, 0, DRM_MODE_OBJECT_CRTC)));
  EXPECT_EQ(ENOENT, errno);
}

TEST_F(DisplayDevice, OnlyAtomicClientsSeeWhatOnlyTheyUnderstand) {
  const Device device;
  const uint32_t crtc = device.crtc_id(0);
  const auto names = [&] { return device.property_names(crtc, DRM_MODE_OBJECT_CRTC); };
  EXPECT_EQ("VRR_ENABLED", names().at(0));
  EXPECT_EQ(0, drmSetClientCap(device.descriptor, DRM_CLIENT_CAP_ATOMIC, 1));
  EXPECT_EQ("ACTIVE", names().at(0));
}

TEST_F(DisplayDevice, ACrtcTellsItsTableSizeOrHasNoTable) {
  for (const uint32_t size : {0U, 256U, 1024U}) {
    boot([&](auto& board) { board.gamma_lut_size = size; });
    const Device device;
    const uint32_t crtc = device.crtc_id(0);
    const auto names = device.property_names(crtc, DRM_MODE_OBJECT_CRTC);
    EXPECT_EQ(size > 0, std::ranges::find(names, "GAMMA_LUT") != names.end());
    if (size > 0) {
      EXPECT_EQ(size, device.property(crtc, DRM_MODE_OBJECT_CRTC, "GAMMA_LUT_SIZE"));
    }
  }
}

TEST_F(DisplayDevice, OpensByDriverNameOnly) {
  EXPECT_GE(Device().descriptor, 0);
  EXPECT_EQ(-1, drmOpen("another", nullptr));
}

TEST_F(DisplayDevice, MissingDeviceCantBeOpened) {
  boot([](auto& board) { board.faults.no_device = true; });
  EXPECT_EQ(-1, Device().descriptor);
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

TEST_F(DisplayDevice, OtherDescriptorsAreLeftAlone) {
  int pipe[2];
  ASSERT_EQ(0, ::pipe(pipe));
  ASSERT_EQ(3, ::write(pipe[1], "abc", 3));
  int readable = 0;
  EXPECT_EQ(0, ::ioctl(pipe[0], FIONREAD, &readable));
  EXPECT_EQ(3, readable);
  EXPECT_EQ(nullptr, drmModeGetResources(pipe[0]));
  EXPECT_EQ(ENOTTY, errno);
  ::close(pipe[0]);
  ::close(pipe[1]);
  EXPECT_EQ(nullptr, drmModeGetResources(pipe[0]));
  EXPECT_EQ(EBADF, errno);
}

}  // namespace
