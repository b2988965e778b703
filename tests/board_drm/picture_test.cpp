// Gamma tables and picture controls: values that reach the display, and values that are refused.
#include <cerrno>
#include <chrono>
#include <thread>

#include "board_drm/device.h"

namespace {

using std::chrono::milliseconds;

// The panel of a board, opened by a client that is allowed to commit.
class Picture : public DisplayDevice {
 protected:
  struct Client : Device {
    Client() { drmSetClientCap(descriptor, DRM_CLIENT_CAP_ATOMIC, 1); }
    uint32_t crtc = crtc_id(0);
    uint32_t panel = connector(0)->connector_id;
  };
  static board::DisplayConnector shown() { return state().connectors.at(0); }
};

TEST_F(Picture, ARefusedPropertyLeavesTheDisplayAsItWas) {
  const Client client;
  const int fd = client.descriptor;
  const uint32_t crtc = client.crtc;
  const uint32_t gamma = client.property_id(crtc, DRM_MODE_OBJECT_CRTC, "GAMMA_LUT");
  const uint32_t size = client.property_id(crtc, DRM_MODE_OBJECT_CRTC, "GAMMA_LUT_SIZE");
  const uint32_t blob = client.gamma_blob(1024);
  const uint32_t small = client.gamma_blob(1023);
  const uint32_t encoder = client.connector(0)->encoders[0];
  const std::string before = description();
  const auto set = [&](uint32_t object, uint32_t type, uint32_t property, uint64_t value) {
    return drmModeObjectSetProperty(fd, object, type, property, value);
  };
  EXPECT_EQ(-EINVAL, set(crtc, DRM_MODE_OBJECT_CRTC, gamma, small));
  EXPECT_EQ(-EINVAL, set(crtc, DRM_MODE_OBJECT_CRTC, gamma, 999));
  EXPECT_EQ(-EINVAL, set(crtc, DRM_MODE_OBJECT_CRTC, gamma, blob + (uint64_t{1} << 32)));
  EXPECT_EQ(-EINVAL, set(crtc, DRM_MODE_OBJECT_CRTC, size, 256)) << "immutable";
  EXPECT_EQ(-EINVAL, set(client.panel, DRM_MODE_OBJECT_CONNECTOR, gamma, blob)) << "not its own";
  EXPECT_EQ(-EINVAL, set(encoder, DRM_MODE_OBJECT_ENCODER, gamma, blob)) << "has none";
  EXPECT_EQ(-ENOENT, set(crtc, DRM_MODE_OBJECT_CONNECTOR, gamma, blob)) << "wrong type";
  EXPECT_EQ(-ENOENT, set(0, DRM_MODE_OBJECT_CRTC, gamma, blob));
  EXPECT_EQ(before, description());
  EXPECT_EQ(0, set(crtc, DRM_MODE_OBJECT_CRTC, gamma, blob));
}

TEST_F(Picture, ARefusedCommitChangesNothingAtAll) {
  const Client client;
  const uint32_t flags = DRM_MODE_ATOMIC_NONBLOCK;
  const auto commit = [&](const char* property, uint64_t value, uint32_t how) {
    return client.commit(client.panel, {{"brightness", 10}, {property, value}}, how);
  };
  const std::string before = description();
  EXPECT_EQ(-EINVAL, commit("hue", 101, flags));
  EXPECT_EQ(-EINVAL, commit("hue", UINT64_MAX, flags));
  EXPECT_EQ(-EINVAL, commit("hue", 10, flags | 0x8000));
  EXPECT_EQ(-EINVAL, commit("hue", 10, flags | DRM_MODE_PAGE_FLIP_EVENT));
  EXPECT_EQ(-EINVAL, commit("CRTC_ID", 0, DRM_MODE_ATOMIC_ALLOW_MODESET)) << "sets no modes";
  const AtomicRequest request(drmModeAtomicAlloc());
  drmModeAtomicAddProperty(request.get(), client.panel, 999, 1);
  EXPECT_EQ(-ENOENT, drmModeAtomicCommit(client.descriptor, request.get(), flags, nullptr));
  EXPECT_EQ(before, description());
}

TEST_F(Picture, ACommitNeedsTheAtomicCapability) {
  const Device plain;
  EXPECT_EQ(-EINVAL, plain.commit(plain.connector(0)->connector_id, {{"hue", 10}}));
}

TEST_F(Picture, WithAnotherMasterReadingWorksAndWritingDoesNot) {
  boot([](auto& board) { board.faults.not_master = true; });
  const Client client;
  EXPECT_EQ(50U, client.property(client.panel, DRM_MODE_OBJECT_CONNECTOR, "hue"));
  EXPECT_EQ(-EACCES, client.load_gamma(client.crtc, 1024));
  EXPECT_EQ(-EACCES, client.commit(client.panel, {{"hue", 10}}));
  EXPECT_EQ(0U, state().commits + state().property_writes);
}

TEST_F(Picture, APacedDriverTakesOneNonblockingCommitAFrame) {
  boot([](auto& board) { board.faults.pace_commits = true; });
  const Client client;
  EXPECT_EQ(0, client.load_gamma(client.crtc, 1024));
  EXPECT_EQ(0, client.commit(client.panel, {{"hue", 10}})) << "a table takes no frame";
  // Two commits in one frame: the loop succeeds sooner or later, even on a slow machine.
  bool is_refused = false;
  for (int i = 0; i < 100 && !is_refused; ++i) {
    std::this_thread::sleep_for(milliseconds(17));
    EXPECT_EQ(0, client.commit(client.panel, {{"hue", 30}}));
    is_refused = client.commit(client.panel, {{"hue", 20}}) == -EBUSY;
  }
  EXPECT_TRUE(is_refused);
  EXPECT_EQ(30U, shown().controls->hue);
}

}  // namespace
