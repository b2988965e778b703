// The atomic commit: several properties of several objects at once, or none of them.
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <span>
#include <vector>

#include "drm/preload/caller_memory.h"
#include "drm/preload/property_list.h"
#include "drm/preload/requests.h"

namespace board::drm {
namespace {

constexpr int64_t kFrame = 16'666'667;  // ns at 60 Hz
constexpr uint32_t kMostItems = 4096;   // far more than there are objects and properties

// A request's lists, as drmModeAtomicCommit lays them out: objects, how many properties each has,
// and then all properties with their values, object after object.
struct Lists {
  std::vector<uint32_t> objects;
  std::vector<uint32_t> counts;
  std::vector<uint32_t> properties;
  std::vector<uint64_t> values;
};

int read_lists(const drm_mode_atomic& atomic, Lists& lists) {
  if (atomic.count_objs > kMostItems) return -ENOMEM;
  lists.objects.resize(atomic.count_objs);
  lists.counts.resize(atomic.count_objs);
  int result = copy_from_caller(atomic.objs_ptr, std::span(lists.objects));
  if (result == 0) result = copy_from_caller(atomic.count_props_ptr, std::span(lists.counts));
  size_t total = 0;
  for (const uint32_t count : lists.counts)
    total += count;
  if (total > kMostItems) return -ENOMEM;
  lists.properties.resize(total);
  lists.values.resize(total);
  if (result == 0) result = copy_from_caller(atomic.props_ptr, std::span(lists.properties));
  if (result == 0) result = copy_from_caller(atomic.prop_values_ptr, std::span(lists.values));
  return result;
}

int apply(DeviceState& state, const Lists& lists) {
  size_t item = 0;
  for (size_t i = 0; i < lists.objects.size(); ++i) {
    const ObjectReference object = find_object(state, lists.objects[i], DRM_MODE_OBJECT_ANY);
    if (object.properties == nullptr) return -ENOENT;
    for (uint32_t j = 0; j < lists.counts[i]; ++j, ++item) {
      const uint32_t property_id = lists.properties[item];
      if (object.properties->find(property_id) == nullptr) return -ENOENT;
      if (property_id == kDpms) return -EINVAL;  // for single writes only
      const int result =
          set_property(state, object, *find_property(property_id), lists.values[item]);
      if (result < 0) return result;
    }
  }
  return 0;
}

std::vector<uint64_t> modes_and_routes(const DeviceState& state) {
  std::vector<uint64_t> values;
  for (const Crtc& crtc : state.crtcs) {
    values.push_back(crtc.properties.value(kModeId));
    values.push_back(crtc.properties.value(kActive));
  }
  for (const Connector& connector : state.connectors) {
    values.push_back(connector.properties.value(kCrtcId));
  }
  return values;
}

bool sets_gamma(const Lists& lists) {
  return std::ranges::find(lists.properties, kGammaLut) != lists.properties.end();
}

int injected_fault(const Settings& settings, const Lists& lists) {
  if (sets_gamma(lists) && settings.gamma_errno != 0) return -settings.gamma_errno;
  return -settings.commit_errno;
}

// A driver that takes one nonblocking commit a frame; a blocking one waits for its turn instead.
int take_frame(DeviceState& state) {
  using std::chrono::nanoseconds;
  using std::chrono::steady_clock;
  const int64_t now =
      std::chrono::duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
  const int64_t former = state.last_nonblocking_commit;
  if (state.settings.pace_commits != 0 && former != 0 && now - former < kFrame) return -EBUSY;
  state.last_nonblocking_commit = now;
  return 0;
}

int check_flags(const Call& call, const drm_mode_atomic& atomic) {
  if (call.file.atomic == 0) return -EINVAL;
  if ((atomic.flags & ~DRM_MODE_ATOMIC_FLAGS) != 0 || atomic.reserved != 0) return -EINVAL;
  // Events would have to be read from the descriptor, where there is only a plain file.
  if ((atomic.flags & (DRM_MODE_PAGE_FLIP_ASYNC | DRM_MODE_PAGE_FLIP_EVENT)) != 0) return -EINVAL;
  return 0;
}

}  // namespace

int atomic_commit(Call& call, drm_mode_atomic& atomic) {
  const DeviceState former = call.state;
  Lists lists;
  int result = check_flags(call, atomic);
  if (result == 0) result = read_lists(atomic, lists);
  if (result == 0) result = apply(call.state, lists);
  if (result == 0) result = check_routing(call.state);
  if (result < 0) return result;
  const bool changes_mode = modes_and_routes(call.state) != modes_and_routes(former);
  if (changes_mode && (atomic.flags & DRM_MODE_ATOMIC_ALLOW_MODESET) == 0) return -EINVAL;
  result = injected_fault(former.settings, lists);
  if (result < 0) return result;

  if ((atomic.flags & DRM_MODE_ATOMIC_TEST_ONLY) != 0) {
    call.state = former;
    return 0;
  }
  ++call.state.commits;
  return (atomic.flags & DRM_MODE_ATOMIC_NONBLOCK) != 0 ? take_frame(call.state) : 0;
}

}  // namespace board::drm
