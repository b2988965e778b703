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
    {kEdid, "EDID", kBlob | kImmutable},
    {kDpms, "DPMS", DRM_MODE_PROP_ENUM, kDpmsValues, kDpmsNames},
    {kNonDesktop, "non-desktop", kRange | kImmutable, kSwitch},
    {kCrtcId, "CRTC_ID", DRM_MODE_PROP_OBJECT | kAtomic, kCrtcObject},
    {kMaxBpc, "max bpc", kRange, kBitsPerColour},
    {kBrightness, "brightness", kRange, kPercent},
    {kContrast, "contrast", kRange, kPercent},
    {kSaturation, "saturation", kRange, kPercent},
    {kHue, "hue", kRange, kPercent},
    {kActive, "ACTIVE", kRange | kAtomic, kSwitch},
    {kModeId, "MODE_ID", kBlob | kAtomic},
    {kVrrEnabled, "VRR_ENABLED", kRange, kSwitch},
    {kDegammaLut, "DEGAMMA_LUT", kBlob},
    {kDegammaLutSize, "DEGAMMA_LUT_SIZE", kRange | kImmutable, kTableSize},
    {kCtm, "CTM", kBlob},
    {kGammaLut, "GAMMA_LUT", kBlob},
    {kGammaLutSize, "GAMMA_LUT_SIZE", kRange | kImmutable, kTableSize},
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
