// The one door between the mapping library and the tables compiled into it: behind it, a schema
// says what structures there are; in front of it, nobody knows.
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
  // What contexts point at. Writable, as the context's pointers are; nothing in the library
  // writes there but j2s_init, and only where a caller left a record changed.
  std::span<j2s_obj> working_objs;
  std::span<j2s_struct> working_structs;
};

// Constant-initialised: valid before main, from any thread.
const GeneratedTables& generated_tables();

}  // namespace j2s

#endif  // J2S_GENERATED_TABLES_H_
