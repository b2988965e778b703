// The utilities of the mapping library: the buffers that belong to a context, and whole files.
// They report as the library does (j2s.h), under the name of this file.
#ifndef J2S_J2S_UTILS_H_
#define J2S_J2S_UTILS_H_

#include <cstddef>
#include <cstdint>

struct j2s_ctx;

// --- Registry of buffers -----------------------------------------------------------------------

// The registry: every heap buffer that the mapping put into a structure, and the cache's buffer.
struct j2s_data_entry {
  void* ptr;      // null marks a free slot
  uint8_t owned;  // 1: the context frees it
};
static_assert(sizeof(j2s_data_entry) == 16 && offsetof(j2s_data_entry, owned) == 8);

struct j2s_data_list {
  int32_t count;
  j2s_data_entry* entries;  // `count` of them
};
static_assert(sizeof(j2s_data_list) == 16 && offsetof(j2s_data_list, entries) == 8);

// Returns a zeroed buffer of `size` bytes that the context owns, or null.
void* j2s_alloc_data(j2s_ctx* ctx, size_t size);

// Registers `ptr` in the first free slot, or in a new one; `owned`: the context frees it.
// Returns 0, or -1 when the registry cannot grow; it is empty then and `ptr` stays the caller's.
int j2s_add_data(j2s_ctx* ctx, void* ptr, bool owned);

// Frees `ptr` and its slot. A buffer registered without ownership is only forgotten; an
// unregistered one is freed.
void j2s_release_data(j2s_ctx* ctx, void* ptr);

// --- Files -------------------------------------------------------------------------------------

// Reads a whole regular file with one read. Returns a buffer of *size + 1 bytes, the last one 0,
// that the caller frees with free; null after a message on standard error, *size untouched then.
// `size` may be null.
char* j2s_read_file(const char* path, size_t* size);

// Replaces the file's content with `text` and syncs it. Returns the number of bytes written, or
// -1 without a message; unless it could not be opened, the file is truncated then.
int j2s_save_file(const char* path, const char* text);

#endif  // J2S_J2S_UTILS_H_
