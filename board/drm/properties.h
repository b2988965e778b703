// The properties that the simulated device's objects can have, with the names, kinds and ranges of
// the kernel's own ones. Constant: values live in device_state.h.
#ifndef BOARD_DRM_PROPERTIES_H_
#define BOARD_DRM_PROPERTIES_H_

#include <cstdint>
#include <span>

namespace board::drm {

// Object ids of the properties. As on a kernel they share one number space with CRTCs, encoders,
// connectors and blobs, which follow. Starting well above any index or count makes it show when a
// client confuses an index with an id.
enum PropertyId : uint32_t {
  kEdid = 31,
  kDpms,
  kNonDesktop,
  kCrtcId,
  kMaxBpc,
  kBrightness,
  kContrast,
  kSaturation,
  kHue,
  kActive,
  kModeId,
  kVrrEnabled,
  kDegammaLut,
  kDegammaLutSize,
  kCtm,
  kGammaLut,
  kGammaLutSize,
  kFirstObjectId
};

inline constexpr uint64_t kNeutralPicture = 50;  // of brightness, contrast, saturation and hue
inline constexpr uint64_t kDegammaEntries = 256;

struct Enumerator {
  uint64_t value;
  const char* name;
};

struct Property {
  const char* name;  // shorter than DRM_PROP_NAME_LEN
  PropertyId id;
  uint32_t flags;  // DRM_MODE_PROP_*
  // By kind: a range's least and largest value, an object's type, an enumeration's values.
  std::span<const uint64_t> values = {};
  std::span<const Enumerator> enumerators = {};

  bool is_blob() const;
  bool is_immutable() const;
  // Shown only to clients with the atomic capability, who alone know what to do with it.
  bool is_atomic_only() const;
};

// Null when there is no property of that id.
const Property* find_property(uint32_t id);

}  // namespace board::drm

#endif  // BOARD_DRM_PROPERTIES_H_
