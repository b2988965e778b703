// Lists in the caller's memory, which requests name by 64-bit addresses. A kernel answers EFAULT
// where it can't reach them; here that is so for null, and other wild addresses crash the caller.
#ifndef BOARD_DRM_PRELOAD_CALLER_MEMORY_H_
#define BOARD_DRM_PRELOAD_CALLER_MEMORY_H_

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace board::drm {

inline void* pointer_from(uint64_t address) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel's structures carry addresses as numbers.
  return reinterpret_cast<void*>(address);
}

// As the kernel's list requests do: copies as many items as there is room for and sets `count` to
// the real number, from which a caller sees what room it needs. 0 or -EFAULT.
template <typename T>
int copy_to_caller(uint64_t address, uint32_t& count, const std::vector<T>& items) {
  const size_t fitting = std::min<size_t>(count, items.size());
  count = static_cast<uint32_t>(items.size());
  if (fitting == 0) return 0;
  if (address == 0) return -EFAULT;
  std::memcpy(pointer_from(address), items.data(), fitting * sizeof(T));
  return 0;
}

// Fills the whole list. 0 or -EFAULT.
template <typename T>
int copy_from_caller(uint64_t address, std::vector<T>& items) {
  if (items.empty()) return 0;
  if (address == 0) return -EFAULT;
  std::memcpy(items.data(), pointer_from(address), items.size() * sizeof(T));
  return 0;
}

}  // namespace board::drm

#endif  // BOARD_DRM_PRELOAD_CALLER_MEMORY_H_
