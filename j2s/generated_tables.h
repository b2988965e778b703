// The library's only link to the compiled-in tables; no other file of it knows the schema.
#ifndef J2S_GENERATED_TABLES_H_
#define J2S_GENERATED_TABLES_H_

#include <span>

#include "j2s/j2s.h"

namespace j2s {

// A set of tables without enumerations and descriptions: no schema of ours has any.
struct GeneratedTables {
  uint32_t magic;  // changes with the schema
  int32_t root_struct;
  std::span<const j2s_obj> objs;
  std::span<const j2s_struct> structs;
  // The tables that contexts point at. Writable, as the context's pointers are; in the library only
  // j2s_init writes there, and only where a caller left a record changed.
  std::span<j2s_obj> working_objs;
  std::span<j2s_struct> working_structs;
};

// Constant-initialised: valid before main, from any thread.
const GeneratedTables& generated_tables();

}  // namespace j2s

#endif  // J2S_GENERATED_TABLES_H_
