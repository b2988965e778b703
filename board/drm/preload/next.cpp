#include "drm/preload/next.h"

#include <dlfcn.h>

namespace board::drm {
namespace {

using Ioctl = int (*)(int, unsigned long, ...);
using Open = int (*)(const char*, int, ...);

template <typename Function>
Function look_up(const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

// Looked up while the library is loaded and the process has one thread: a look-up later, in a
// child just forked from a threaded process, could wait for ever for the loader's lock.
Ioctl g_ioctl = look_up<Ioctl>("ioctl");
Open g_open = look_up<Open>("open");
Open g_open64 = look_up<Open>("open64");

// Other libraries' start-up code may call before ours has run.
template <typename Function>
Function ready(Function found, const char* name) {
  return found != nullptr ? found : look_up<Function>(name);
}

}  // namespace

int next_ioctl(int descriptor, unsigned long request, void* argument) {
  return ready(g_ioctl, "ioctl")(descriptor, request, argument);
}

int next_open(const char* path, int flags, mode_t mode) {
  return ready(g_open, "open")(path, flags, mode);
}

int next_open64(const char* path, int flags, mode_t mode) {
  return ready(g_open64, "open64")(path, flags, mode);
}

}  // namespace board::drm
