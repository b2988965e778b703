#include "drm/properties.h"

#include <drm.h>
#include <drm_mode.h>

#include <algorithm>
#include <iterator>

namespace board::drm {
namespace {

constexpr uint64_t kSwitch[] = {0, 1};
constexpr uint64_t kPercent[] = {0, 100};
constexpr uint64_t kBitsPerColour[] = {8, 12};
constexpr uint64_t kTableSize[] = {0, UINT32_MAX};
constexpr uint64_t kCrtcObject[] = {DRM_MODE_OBJECT_CRTC};
constexpr uint64_t kDpmsValues[] = {DRM_MODE_DPMS_ON, DRM_MODE_DPMS_STANDBY, DRM_MODE_DPMS_SUSPEND,
                                    DRM_MODE_DPMS_OFF};
constexpr Enumerator kDpmsNames[] = {{DRM_MODE_DPMS_ON, "On"},
                                     {DRM_MODE_DPMS_STANDBY, "Standby"},
                                     {DRM_MODE_DPMS_SUSPEND, "Suspend"},
                                     {DRM_MODE_DPMS_OFF, "Off"}};

constexpr uint32_t kBlob = DRM_MODE_PROP_BLOB;
constexpr uint32_t kRange = DRM_MODE_PROP_RANGE;
constexpr uint32_t kImmutable = DRM_MODE_PROP_IMMUTABLE;
constexpr uint32_t kAtomic = DRM_MODE_PROP_ATOMIC;

constexpr Property kProperties[] = {
    {"EDID", kEdid, kBlob | kImmutable},
    {"DPMS", kDpms, DRM_MODE_PROP_ENUM, kDpmsValues, kDpmsNames},
    {"non-desktop", kNonDesktop, kRange | kImmutable, kSwitch},
    {"CRTC_ID", kCrtcId, DRM_MODE_PROP_OBJECT | kAtomic, kCrtcObject},
    {"max bpc", kMaxBpc, kRange, kBitsPerColour},
    {"brightness", kBrightness, kRange, kPercent},
    {"contrast", kContrast, kRange, kPercent},
    {"saturation", kSaturation, kRange, kPercent},
    {"hue", kHue, kRange, kPercent},
    {"ACTIVE", kActive, kRange | kAtomic, kSwitch},
    {"MODE_ID", kModeId, kBlob | kAtomic},
    {"VRR_ENABLED", kVrrEnabled, kRange, kSwitch},
    {"DEGAMMA_LUT", kDegammaLut, kBlob},
    {"DEGAMMA_LUT_SIZE", kDegammaLutSize, kRange | kImmutable, kTableSize},
    {"CTM", kCtm, kBlob},
    {"GAMMA_LUT", kGammaLut, kBlob},
    {"GAMMA_LUT_SIZE", kGammaLutSize, kRange | kImmutable, kTableSize},
};

}  // namespace

bool Property::is_blob() const {
  return (flags & DRM_MODE_PROP_BLOB) != 0;
}
bool Property::is_immutable() const {
  return (flags & DRM_MODE_PROP_IMMUTABLE) != 0;
}
bool Property::is_atomic_only() const {
  return (flags & DRM_MODE_PROP_ATOMIC) != 0;
}

const Property* find_property(uint32_t id) {
  const auto* found = std::ranges::find(kProperties, id, &Property::id);
  return found == std::end(kProperties) ? nullptr : found;
}

}  // namespace board::drm
