// The calls that this library stands before: whoever is next in line, as a rule the C library.
//
// Callable from any thread, also between fork and exec: nothing is allocated and no lock taken
// once the library is loaded.
#ifndef BOARD_DRM_PRELOAD_NEXT_H_
#define BOARD_DRM_PRELOAD_NEXT_H_

#include <sys/types.h>

namespace board::drm {

int next_ioctl(int descriptor, unsigned long request, void* argument);
int next_open(const char* path, int flags, mode_t mode);
int next_open64(const char* path, int flags, mode_t mode);

}  // namespace board::drm

#endif  // BOARD_DRM_PRELOAD_NEXT_H_
