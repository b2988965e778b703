// Requests that change the picture: property blobs, single properties, the atomic commit.
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "drm/preload/caller_memory.h"
#include "drm/preload/requests.h"
#include "drm/properties.h"

namespace board::drm {
namespace {

constexpr int64_t kFrame = 16'666'667;  // ns at 60 Hz
constexpr uint32_t kMaxItems = 4096;    // far more than there are objects and properties

// A request's lists, as drmModeAtomicCommit lays them out: objects, how many properties each has,
// and then all properties with their values, object after object.
struct Lists {
  std::vector<uint32_t> objects;
  std::vector<uint32_t> counts;
  std::vector<uint32_t> properties;
  std::vector<uint64_t> values;
};

int read_lists(const drm_mode_atomic& atomic, Lists& lists) {
  if (atomic.count_objs > kMaxItems) return -ENOMEM;
  lists.objects.resize(atomic.count_objs);
  lists.counts.resize(atomic.count_objs);
  int result = copy_from_caller(atomic.objs_ptr, lists.objects);
  if (result == 0) result = copy_from_caller(atomic.count_props_ptr, lists.counts);
  size_t total = 0;
  for (const uint32_t count : lists.counts)
    total += count;
  if (total > kMaxItems) return -ENOMEM;
  lists.properties.resize(total);
  lists.values.resize(total);
  if (result == 0) result = copy_from_caller(atomic.props_ptr, lists.properties);
  if (result == 0) result = copy_from_caller(atomic.prop_values_ptr, lists.values);
  return result;
}

int apply(DeviceRecord& record, const Lists& lists) {
  size_t item = 0;
  for (size_t i = 0; i < lists.objects.size(); ++i) {
    const auto object = find_object(record, lists.objects[i], DRM_MODE_OBJECT_ANY);
    for (uint32_t j = 0; j < lists.counts[i]; ++j, ++item) {
      const int result = set_property(record, object, lists.properties[item], lists.values[item]);
      if (result < 0) return result;
    }
  }
  return 0;
}

int injected_fault(const Settings& settings, const Lists& lists) {
  const bool sets_gamma = std::ranges::find(lists.properties, kGammaLut) != lists.properties.end();
  if (sets_gamma && settings.gamma_errno != 0) return -settings.gamma_errno;
  return -settings.commit_errno;
}

// A driver that takes one nonblocking commit a frame; a blocking one waits for its turn instead.
int take_frame(DeviceRecord& record) {
  using std::chrono::nanoseconds;
  using std::chrono::steady_clock;
  const int64_t now =
      std::chrono::duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
  const int64_t former = record.last_nonblocking_commit;
  if (record.settings.pace_commits != 0 && former != 0 && now - former < kFrame) return -EBUSY;
  record.last_nonblocking_commit = now;
  return 0;
}

int check_flags(DeviceAccess& device, const drm_mode_atomic& atomic) {
  if (device.file().atomic == 0) return -EINVAL;
  if ((atomic.flags & ~DRM_MODE_ATOMIC_FLAGS) != 0 || atomic.reserved != 0) return -EINVAL;
  // Events would have to be read from the descriptor, where there is only a plain file.
  if ((atomic.flags & (DRM_MODE_PAGE_FLIP_ASYNC | DRM_MODE_PAGE_FLIP_EVENT)) != 0) return -EINVAL;
  return 0;
}

}  // namespace

int create_blob(DeviceAccess& device, drm_mode_create_blob& blob) {
  if (blob.length == 0) return -EINVAL;
  auto& slots = device.record().blobs;
  const auto free = std::ranges::find(slots, 0U, &Blob::size);
  if (blob.length > kMaxBlob || free == slots.end()) return -ENOMEM;
  std::vector<uint8_t> data(blob.length);
  if (const int result = copy_from_caller(blob.data, data); result < 0) return result;
  const auto slot = static_cast<size_t>(free - slots.begin());
  device.stored().write_blob(slot, data);
  *free = {device.file().number, blob.length, 0};
  blob.blob_id = blob_id(slot);
  return 0;
}

// Gives up the creator's hold. The blob itself goes when nothing shows it any more.
int destroy_blob(DeviceAccess& device, drm_mode_destroy_blob& blob) {
  const auto found = find_object(device.record(), blob.blob_id, DRM_MODE_OBJECT_BLOB);
  if (found.type == 0) return -ENOENT;
  uint64_t& owner = device.record().blobs[found.index].owner;
  if (owner != device.file().number) return -EPERM;
  owner = 0;
  return 0;
}

// Needs no atomic capability, and works on a CRTC that is off: a table loaded then shows later.
int set_object_property(DeviceAccess& device, drm_mode_obj_set_property& property) {
  DeviceRecord& record = device.record();
  const auto object = find_object(record, property.obj_id, property.obj_type);
  if (object.type == 0) return -ENOENT;
  int result = set_property(record, object, property.prop_id, property.value);
  if (result == -ENOENT) return -EINVAL;  // as kernels answer here, but not in a commit
  if (result == 0 && property.prop_id == kGammaLut) result = -record.settings.gamma_errno;
  if (result == 0) ++record.property_writes;
  return result;
}

int atomic_commit(DeviceAccess& device, drm_mode_atomic& atomic) {
  DeviceRecord& record = device.record();
  Lists lists;
  int result = check_flags(device, atomic);
  if (result == 0) result = read_lists(atomic, lists);
  if (result == 0) result = apply(record, lists);
  if (result == 0) result = injected_fault(record.settings, lists);
  if (result < 0) return result;
  if ((atomic.flags & DRM_MODE_ATOMIC_TEST_ONLY) != 0) {
    record = device.stored().record();
    return 0;
  }
  ++record.commits;
  return (atomic.flags & DRM_MODE_ATOMIC_NONBLOCK) != 0 ? take_frame(record) : 0;
}

}  // namespace board::drm
