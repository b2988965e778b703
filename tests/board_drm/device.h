// Short helpers to talk to the display device, through libdrm alone.
#ifndef TESTS_BOARD_DRM_DEVICE_H_
#define TESTS_BOARD_DRM_DEVICE_H_

#include <gtest/gtest.h>
#include <xf86drm.h>
#include <xf86drmMode.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "drm/display_state.h"

template <auto Free>
struct Call {
  void operator()(auto* pointer) const { Free(pointer); }
};
using Resources = std::unique_ptr<drmModeRes, Call<drmModeFreeResources>>;
using ConnectorPtr = std::unique_ptr<drmModeConnector, Call<drmModeFreeConnector>>;
using EncoderPtr = std::unique_ptr<drmModeEncoder, Call<drmModeFreeEncoder>>;
using PropertiesPtr = std::unique_ptr<drmModeObjectProperties, Call<drmModeFreeObjectProperties>>;
using PropertyPtr = std::unique_ptr<drmModePropertyRes, Call<drmModeFreeProperty>>;
using BlobPtr = std::unique_ptr<drmModePropertyBlobRes, Call<drmModeFreePropertyBlob>>;
using AtomicRequest = std::unique_ptr<drmModeAtomicReq, Call<drmModeAtomicFree>>;

// An open display device.
class Device {
 public:
  Device() : descriptor(drmOpen("velmoran", nullptr)) {}
  explicit Device(int opened) : descriptor(opened) {}
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;
  ~Device() { close(); }
  void close();

  // The connector at an index of the resources' list.
  [[nodiscard]] ConnectorPtr connector(int index) const;
  // The CRTC of the connector's first encoder; 0 if it has none.
  [[nodiscard]] uint32_t crtc_id(int index) const;

  struct Property {
    uint32_t id = 0;  // 0: the object has no property of that name
    uint64_t value = UINT64_MAX;
  };
  [[nodiscard]] uint32_t property_id(uint32_t object_id, uint32_t type,
                                     const std::string& name) const {
    return find_property(object_id, type, name).id;
  }
  [[nodiscard]] uint64_t property(uint32_t object_id, uint32_t type,
                                  const std::string& name) const {
    return find_property(object_id, type, name).value;
  }

  // A blob of `entries` table entries, entry i having value + i in each channel. 0 on failure.
  [[nodiscard]] uint32_t gamma_blob(uint32_t entries, uint16_t value = 0) const;
  [[nodiscard]] int set_gamma(uint32_t crtc, uint64_t blob) const;
  // Loads a whole table as a client does: create, set, destroy.
  [[nodiscard]] int load_gamma(uint32_t crtc, uint32_t entries, uint16_t value = 0) const;

  struct Item {
    const char* property;
    uint64_t value;
  };
  [[nodiscard]] int commit(uint32_t connector_id, const std::vector<Item>& items,
                           uint32_t flags = DRM_MODE_ATOMIC_NONBLOCK) const;

  int descriptor;

 private:
  [[nodiscard]] Property find_property(uint32_t object_id, uint32_t type,
                                       const std::string& name) const;
};

// A board that boots, by default with one eDP panel.
class DisplayDevice : public testing::Test {
 protected:
  DisplayDevice() { boot(); }
  // Boots the board again with a changed description.
  static void boot(const std::function<void(board::Description&)>& change = {});
  static board::DisplayState state() { return board::read_display_state(board::board_folder()); }
  static std::string description() { return board::describe_display(board::board_folder()); }
};

#endif  // TESTS_BOARD_DRM_DEVICE_H_
