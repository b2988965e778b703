// The table cache: a file that holds a context's bytes and the tables behind it.
//
//   offset 0   j2s_ctx    magic, counts, root_struct and flags count; pointers mean nothing here
//         80   j2s_obj    obj_count of them (109, as the schema was first shipped)
//       9672   j2s_struct struct_count of them, up to the end (then 10200)
#ifndef J2S_CACHE_H_
#define J2S_CACHE_H_

#include "j2s/generated_tables.h"
#include "j2s/j2s.h"

namespace j2s {

// Points `ctx` at the tables in the file and registers their buffer with it.
// False: the file is not there, not ours, or not equal to `tables`; `ctx` is as before.
bool load_cache(const char* path, const GeneratedTables& tables, j2s_ctx& ctx);

// Writes the file, if it can. Readable by this user alone when it is new.
void write_cache(const char* path, const j2s_ctx& ctx);

// True if the context's tables lie in the buffer at `ptr`.
bool is_cache_buffer(const j2s_ctx& ctx, const void* ptr);

}  // namespace j2s

#endif  // J2S_CACHE_H_
