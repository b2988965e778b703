// The simulated display device's memory: everything that a kernel driver would keep between calls,
// as one plain record of fixed size (device_file.h). Types and flags are those of the kernel's
// drm_mode.h.
#ifndef BOARD_DRM_DEVICE_RECORD_H_
#define BOARD_DRM_DEVICE_RECORD_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "description/description.h"

namespace board::drm {

inline constexpr size_t kMaxBlobs = 32;
inline constexpr size_t kMaxBlob = kMaxGammaTable * 8;  // bytes; 8 a table entry
inline constexpr size_t kMaxOpenFiles = 64;

// Ids of the properties. As on a kernel they share one number space with the objects. Starting well
// above any index or count makes it show when a client confuses an index with an id.
enum PropertyId : uint32_t {
  kActive = 31,
  kGammaLut,
  kGammaLutSize,
  kCrtcId,
  kBrightness,
  kContrast,
  kSaturation,
  kHue,
  kFirstObjectId,
};

// The display hardware hangs together in outputs: connector, encoder and CRTC, one each. Their ids
// follow from their place in the description.
inline constexpr uint32_t crtc_id(size_t position) {
  return static_cast<uint32_t>(kFirstObjectId + position);
}
inline constexpr uint32_t encoder_id(size_t output) {
  return static_cast<uint32_t>(kFirstObjectId + kMaxConnectors + output);
}
inline constexpr uint32_t connector_id(size_t output) {
  return static_cast<uint32_t>(kFirstObjectId + 2 * kMaxConnectors + output);
}
inline constexpr uint32_t blob_id(size_t slot) {
  return static_cast<uint32_t>(kFirstObjectId + 3 * kMaxConnectors + slot);
}

struct Output {
  uint32_t connector_type;
  uint32_t connector_type_id;
  uint32_t connected;
  uint32_t has_encoder;
  uint32_t lit;  // connector, encoder and CRTC are routed to each other and the CRTC is on
  uint32_t has_controls;
  std::array<uint32_t, 4> controls;  // percent: brightness, contrast, saturation, hue
  uint32_t gamma_blob;               // id, 0: none
};

struct Blob {
  uint64_t owner;  // number of the open file that holds it; 0: none
  uint32_t size;   // in bytes; 0: the slot is free
  uint32_t reserved;
};

// One open file description, however many descriptors (dup, fork) refer to it.
struct OpenFile {
  uint64_t number;  // from 1, never given twice; 0: the slot is free
  uint32_t atomic;  // has asked for DRM_CLIENT_CAP_ATOMIC
  uint32_t master;
};

// The device's behaviour while the board runs; from the board's description.
// An errno of 0 means that the call works; the others are switches, 0 or 1.
struct Settings {
  uint32_t gamma_lut_size;  // entries; 0: the CRTCs have no GAMMA_LUT
  uint32_t width;           // of the picture that a lit output shows
  uint32_t height;
  int32_t open_errno;
  int32_t gamma_errno;
  int32_t commit_errno;
  uint32_t other_master;        // a program outside the simulation is DRM master
  uint32_t other_master_named;  // and has set a bus id
  uint32_t pace_commits;
  uint32_t output_count;
};

struct DeviceRecord {
  uint64_t mark;  // kRecordMark
  Settings settings;
  std::array<Output, kMaxConnectors> outputs;  // in the order of the board's description
  std::array<Blob, kMaxBlobs> blobs;
  std::array<OpenFile, kMaxOpenFiles> open_files;
  uint64_t last_file_number;
  uint64_t commits;                 // successful atomic commits that were no mere tests
  uint64_t property_writes;         // successful single property calls
  int64_t last_nonblocking_commit;  // CLOCK_MONOTONIC, ns; 0: none yet

  [[nodiscard]] std::span<Output> used_outputs() {
    return std::span(outputs).first(settings.output_count);
  }
  [[nodiscard]] std::span<const Output> used_outputs() const {
    return std::span(outputs).first(settings.output_count);
  }
  // The CRTCs are in the opposite order of the connectors, so that the CRTC at a connector's index
  // is the wrong one on any board with two connectors. Works both ways.
  [[nodiscard]] size_t crtc_position(size_t output) const {
    return settings.output_count - 1 - output;
  }

  // Frees blobs that no open file holds and no CRTC shows: the kernel's reference rule. A blob that
  // its creator destroyed lives on for as long as a CRTC shows it.
  void drop_unused_blobs() {
    for (size_t slot = 0; slot < kMaxBlobs; ++slot) {
      bool used = blobs[slot].owner != 0;
      for (const Output& output : used_outputs())
        used = used || output.gamma_blob == blob_id(slot);
      if (!used) blobs[slot].size = 0;
    }
  }
};

// Changes whenever the layout does.
inline constexpr uint64_t kRecordMark = 0x32'6d72'6475'7071;

// Padding would carry whatever the memory held into the file.
static_assert(std::is_trivially_copyable_v<DeviceRecord>);
static_assert(std::has_unique_object_representations_v<DeviceRecord>);

}  // namespace board::drm

#endif  // BOARD_DRM_DEVICE_RECORD_H_
