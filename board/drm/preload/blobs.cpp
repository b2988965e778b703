// Requests that create, destroy and read property blobs.
#include <cerrno>
#include <span>
#include <utility>
#include <vector>

#include "drm/preload/caller_memory.h"
#include "drm/preload/requests.h"

namespace board::drm {
namespace {

// Far above any table of a display; a kernel's own bound is its memory.
constexpr uint32_t kLargestBlob = 16U << 20;

}  // namespace

int create_blob(Call& call, drm_mode_create_blob& blob) {
  if (blob.length == 0) return -EINVAL;
  if (blob.length > kLargestBlob) return -ENOMEM;
  std::vector<uint8_t> data(blob.length);
  if (const int result = copy_from_caller(blob.data, std::span(data)); result < 0) return result;
  blob.blob_id = call.state.free_id();
  call.state.blobs.push_back({blob.blob_id, call.file.number, std::move(data)});
  return 0;
}

// Gives up the creator's hold. The blob itself goes when nothing shows it any more.
int destroy_blob(Call& call, drm_mode_destroy_blob& blob) {
  Blob* found = call.state.find_blob(blob.blob_id);
  if (found == nullptr) return -ENOENT;
  if (found->owner != call.file.number) return -EPERM;
  found->owner = 0;
  return 0;
}

// Any client may read any blob. Data go out only into room of the exact size.
int get_blob(Call& call, drm_mode_get_blob& blob) {
  const Blob* found = call.state.find_blob(blob.blob_id);
  if (found == nullptr) return -ENOENT;
  const bool fits = blob.length == found->data.size();
  blob.length = static_cast<uint32_t>(found->data.size());
  return fits ? copy_to_caller(blob.data, std::span<const uint8_t>(found->data)) : 0;
}

}  // namespace board::drm
