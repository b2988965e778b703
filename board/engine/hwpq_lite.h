// The entry points of libhwpq_lite.so, as the daemon looks them up by name.
//
// Each returns 0 or a negative result (engine/context.h), with a line on standard error that says
// why. A handle is used by one thread at a time; handles of their own may be used at once.
#ifndef BOARD_ENGINE_HWPQ_LITE_H_
#define BOARD_ENGINE_HWPQ_LITE_H_

#include <cstdint>

#include "baseparameter_api.h"

// All else in the library is hidden.
#pragma GCC visibility push(default)
extern "C" {

// configuration: 288 bytes that begin with the little-endian 32-bit words 1, 5, 9, 9.
// On success *handle is a context for the other calls, until hwpq_lite_deinit.
int32_t hwpq_lite_init(void** handle, void* configuration) noexcept;

// Computes the table from the PQ document as it is stored now. On failure the context keeps the
// table it had.
int32_t hwpq_lite_run(void* handle, void* configuration) noexcept;

// Writes the last table as a .cube file; a file that could not be written whole is removed.
int32_t hwpq_lite_save_3dlut(void* handle, const char* path) noexcept;

int32_t hwpq_lite_deinit(void* handle) noexcept;

// Copies the last table; colour/lut3d.h says how it is laid out. On failure *lut stays as it was.
int32_t hwpq_lite_get_3dlut(void* handle, cubic_lut_data* lut) noexcept;

}  // extern "C"
#pragma GCC visibility pop

#endif  // BOARD_ENGINE_HWPQ_LITE_H_
