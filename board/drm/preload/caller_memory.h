// Lists in the caller's memory, which requests name by 64-bit addresses. A kernel answers EFAULT
// where it can't reach them; here that is so for null, and other wild addresses crash the caller.
#ifndef BOARD_DRM_PRELOAD_CALLER_MEMORY_H_
#define BOARD_DRM_PRELOAD_CALLER_MEMORY_H_

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace board::drm {

inline void* pointer_from(uint64_t address) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel's structures carry addresses as numbers.
  return reinterpret_cast<void*>(address);
}

template <typename T>
int copy_to_caller(uint64_t address, std::span<const T> items) {
  if (items.empty()) return 0;
  if (address == 0) return -EFAULT;
  std::memcpy(pointer_from(address), items.data(), items.size_bytes());
  return 0;
}

// The two habits of the kernel's list requests. Both set `count` to the real number, from which a
// caller sees what room it needs. Some copy as many items as there is room for:
template <typename T, typename Count>
int copy_what_fits(uint64_t address, Count& count, const std::vector<T>& items) {
  const size_t fitting = std::min<size_t>(count, items.size());
  count = static_cast<Count>(items.size());
  return copy_to_caller(address, std::span(items).first(fitting));
}

// others copy all or nothing.
template <typename T, typename Count>
int copy_if_all_fit(uint64_t address, Count& count, const std::vector<T>& items) {
  const bool fits = count >= items.size();
  count = static_cast<Count>(items.size());
  return fits ? copy_to_caller(address, std::span<const T>(items)) : 0;
}

template <typename T>
int copy_from_caller(uint64_t address, std::span<T> items) {
  if (items.empty()) return 0;
  if (address == 0) return -EFAULT;
  std::memcpy(items.data(), pointer_from(address), items.size_bytes());
  return 0;
}

}  // namespace board::drm

#endif  // BOARD_DRM_PRELOAD_CALLER_MEMORY_H_
