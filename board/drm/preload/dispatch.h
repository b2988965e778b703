// From a request number to the function that answers it. Both functions answer as a kernel does
// inside: 0 or a negative errno. Safe from any thread; no lock outlives a call.
#ifndef BOARD_DRM_PRELOAD_DISPATCH_H_
#define BOARD_DRM_PRELOAD_DISPATCH_H_

namespace board::drm {

inline constexpr unsigned kDrmRequestType = 'd';  // DRM_IOCTL_BASE

// To be called once a program has opened the device. On failure the caller closes the descriptor.
int handle_open(int descriptor) noexcept;

// argument: the request's structure in the caller's memory; its size is part of the request.
int handle_ioctl(int descriptor, unsigned long request, void* argument) noexcept;

}  // namespace board::drm

#endif  // BOARD_DRM_PRELOAD_DISPATCH_H_
