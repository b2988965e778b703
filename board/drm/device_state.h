// The simulated display device's memory: everything that a kernel driver would keep between calls.
//
// A plain value: a caller loads it (state_file.h), looks or changes, and stores it again. Object
// ids, types and property flags are those of the kernel's drm_mode.h.
#ifndef BOARD_DRM_DEVICE_STATE_H_
#define BOARD_DRM_DEVICE_STATE_H_

#include <cstdint>
#include <vector>

namespace board::drm {

// How the device behaves for as long as the board runs; from the board's description.
// An errno of 0 means that the call works; the others are switches, 0 or 1.
struct Settings {
  uint32_t gamma_lut_size = 0;  // entries; 0: the CRTCs have no GAMMA_LUT
  int32_t open_errno = 0;
  int32_t gamma_errno = 0;
  int32_t commit_errno = 0;
  uint32_t other_master = 0;        // a program outside the simulation is DRM master
  uint32_t other_master_named = 0;  // and has set a bus id
  uint32_t pace_commits = 0;
};

// The properties of one object with their values, in the order in which the device lists them.
struct PropertyList {
  std::vector<uint32_t> ids;
  std::vector<uint64_t> values;  // values[i] belongs to ids[i]

  void add(uint32_t id, uint64_t value);
  // Null when the object has no such property. Valid until the list changes.
  uint64_t* find(uint32_t id);
  const uint64_t* find(uint32_t id) const;
  // The value of a property, 0 when the object has no such property.
  uint64_t value(uint32_t id) const;
};

struct Crtc {
  uint32_t id = 0;
  PropertyList properties;
};

struct Encoder {
  uint32_t id = 0;
  uint32_t type = 0;            // DRM_MODE_ENCODER_*
  uint32_t possible_crtcs = 0;  // bit i: the CRTC at index i
};

struct Connector {
  uint32_t id = 0;
  uint32_t type = 0;
  uint32_t type_id = 0;
  uint32_t connected = 0;
  uint32_t encoder_id = 0;  // 0: it has none
  PropertyList properties;
};

struct Blob {
  uint32_t id = 0;
  uint64_t owner = 0;  // number of the open file that holds it; 0: none
  std::vector<uint8_t> data;
};

// One open file description, however many descriptors (dup, fork) refer to it.
struct OpenFile {
  uint64_t number = 0;  // from 1, never given twice
  uint32_t atomic = 0;  // has asked for DRM_CLIENT_CAP_ATOMIC
  uint32_t master = 0;
  uint32_t was_master = 0;
  uint32_t bus_id_set = 0;  // as master, by DRM_IOCTL_SET_VERSION
};

struct DeviceState {
  Settings settings;
  std::vector<Crtc> crtcs;
  std::vector<Encoder> encoders;
  std::vector<Connector> connectors;  // in the order of the board's description
  std::vector<Blob> blobs;
  std::vector<OpenFile> open_files;
  uint64_t last_file_number = 0;
  uint64_t commits = 0;                 // successful atomic commits that were no mere tests
  uint64_t property_writes = 0;         // successful single property calls
  int64_t last_nonblocking_commit = 0;  // CLOCK_MONOTONIC, ns; 0: none yet

  // Each answers null when the id is unknown. Valid until the list changes.
  Crtc* find_crtc(uint32_t id);
  const Crtc* find_crtc(uint32_t id) const;
  Encoder* find_encoder(uint32_t id);
  Connector* find_connector(uint32_t id);
  Blob* find_blob(uint32_t id);
  const Blob* find_blob(uint32_t id) const;

  // The lowest object id in no use. As in a kernel, the id of a blob that is gone comes back.
  uint32_t free_id() const;
  // The CRTC that an encoder feeds from, 0 when none: whichever its connector is routed to.
  uint32_t crtc_of_encoder(uint32_t encoder_id) const;
  // The DRM master among the open files; null when none of them is.
  OpenFile* master();
  // Frees blobs that no open file holds and no object uses: the kernel's reference rule. A blob
  // that its creator destroyed lives on for as long as a CRTC shows it.
  void drop_unused_blobs();
};

}  // namespace board::drm

#endif  // BOARD_DRM_DEVICE_STATE_H_
