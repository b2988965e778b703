// j2s: maps between C structures in memory and cJSON trees, driven by type tables.
//
// One record per member (j2s_obj), structure (j2s_struct), enumeration (j2s_enum) and enumeration
// constant (j2s_enum_value) says where a value lies and what it is called in JSON. A context
// (j2s_ctx) points at one set of tables; j2s_init points it at the set that is compiled in.
// Buffers of a context and reading and saving whole files are in j2s_utils.h.
//
// The daemon's schema needs structures, numbers, texts and arrays. Enumerations, descriptions,
// dynamic arrays, template mode and query mode serve other schemas: nothing in the daemon calls
// them.
//
// Threads: every thread uses a context of its own. Conversions only read the tables, so that any
// number of them may run at once on different structures; one context, or one structure that is
// being loaded, belongs to one thread at a time.
//
// Errors: integer results are 0 or negative, pointer results are null on failure; nothing throws.
// Messages go to standard error, one line each: "E: FILE(LINE) [FUNCTION]: ..." for errors,
// "W: ..." for warnings.
#ifndef J2S_J2S_H_
#define J2S_J2S_H_

#include <cjson/cJSON.h>

#include <cstddef>
#include <cstdint>

#include "j2s/j2s_utils.h"

// Type codes: j2s_obj::type. Any other code is no scalar: it reads as 0 and is never written.
enum j2s_type : uint8_t {
  J2S_TYPE_INT8 = 1,  // also for boolean members
  J2S_TYPE_UINT8 = 2,
  J2S_TYPE_INT16 = 3,
  J2S_TYPE_UINT16 = 4,
  J2S_TYPE_INT32 = 5,
  J2S_TYPE_UINT32 = 6,
  J2S_TYPE_INT64 = 7,
  J2S_TYPE_UINT64 = 8,
  J2S_TYPE_FLOAT = 9,
  J2S_TYPE_DOUBLE = 10,
  J2S_TYPE_STRING = 11,  // flags exactly ARRAY: char array; exactly POINTER: char*
  J2S_TYPE_STRUCT = 12,  // a JSON object; struct_ref names its structure
};

// Flag bits: j2s_obj::flags. A member is an array when ARRAY is set and POINTER_TO_ARRAY is not.
enum j2s_flag : uint8_t {
  J2S_FLAG_ARRAY = 0x01,               // elem_count elements of elem_size bytes
  J2S_FLAG_POINTER = 0x02,             // dynamic array counted by the member len_obj, or a char*
  J2S_FLAG_ARRAY_OF_ARRAYS = 0x04,     // inner arrays of elem_size / base_elem_size elements
  J2S_FLAG_POINTER_TO_POINTER = 0x08,  // one more pointer level behind the first
  J2S_FLAG_POINTER_TO_ARRAY = 0x10,    // the pointer is followed before the array is walked
};

inline constexpr size_t kJ2sNameSize = 64;  // of every name, with its terminating 0

// The table records and the context are packed, little-endian, with 8-byte pointers: the cache
// file holds their bytes as they are.
#pragma pack(push, 1)

// One member of a structure.
struct j2s_obj {
  char name[kJ2sNameSize];  // the member's name and its JSON key
  uint8_t type;             // j2s_type
  uint8_t flags;            // j2s_flag bits
  uint32_t offset;          // bytes from the start of the structure
  uint32_t elem_size;       // bytes of one element of the outermost dimension
  uint16_t elem_count;      // elements of the outermost dimension, 1 when no array
  uint32_t base_elem_size;  // bytes of one innermost element: a scalar, a structure, a char
  int16_t next_obj;         // index of the structure's next member, -1 after the last
  int16_t struct_ref;       // type STRUCT: index of the structure, else -1
  int16_t enum_ref;         // index of the enumeration whose names JSON uses, -1 for none
  int16_t len_obj;          // dynamic array: index of the sibling that counts it, else -1
};
static_assert(sizeof(j2s_obj) == 88);
static_assert(offsetof(j2s_obj, type) == 64 && offsetof(j2s_obj, flags) == 65);
static_assert(offsetof(j2s_obj, offset) == 66 && offsetof(j2s_obj, elem_size) == 70);
static_assert(offsetof(j2s_obj, elem_count) == 74 && offsetof(j2s_obj, base_elem_size) == 76);
static_assert(offsetof(j2s_obj, next_obj) == 80 && offsetof(j2s_obj, struct_ref) == 82);
static_assert(offsetof(j2s_obj, enum_ref) == 84 && offsetof(j2s_obj, len_obj) == 86);

struct j2s_struct {
  char name[kJ2sNameSize];
  int16_t first_obj;  // index of the first member, -1 for a structure without members
};
static_assert(sizeof(j2s_struct) == 66 && offsetof(j2s_struct, first_obj) == 64);

struct j2s_enum {
  char name[kJ2sNameSize];
  int16_t first_value;  // index into the table of constants
  int16_t value_count;
};
static_assert(sizeof(j2s_enum) == 68 && offsetof(j2s_enum, first_value) == 64);
static_assert(offsetof(j2s_enum, value_count) == 66);

struct j2s_enum_value {
  char name[kJ2sNameSize];
  int32_t value;
};
static_assert(sizeof(j2s_enum_value) == 68 && offsetof(j2s_enum_value, value) == 64);

// A context. The caller owns the storage (usually on its stack) and zeroes it before j2s_init.
struct j2s_ctx {
  uint32_t magic;  // fingerprint of the compiled-in tables
  int32_t obj_count;
  j2s_obj* obj_table;
  int32_t struct_count;
  j2s_struct* struct_table;
  int32_t enum_count;
  j2s_enum* enum_table;
  int32_t enum_value_count;
  j2s_enum_value* enum_value_table;
  int32_t desc_count;
  const char** desc_table;   // descriptions by member index; an entry may be null
  int32_t root_struct;       // the structure meant when a caller names none, -1 for none
  uint8_t pretty_print;      // j2s_dump_struct: indented (not 0) or compact (0)
  uint8_t emit_desc;         // not 0: a member's description goes before it, under "@NAME"
  uint8_t emit_enums;        // not 0: j2s_dump_struct appends all enumerations under "@enum"
  uint8_t owns_data;         // not 0: j2s_deinit frees every owned buffer
  j2s_data_list* data_list;  // buffers of this context, null until the first is registered
};
static_assert(sizeof(j2s_ctx) == 80 && sizeof(void*) == 8);
static_assert(offsetof(j2s_ctx, obj_count) == 4 && offsetof(j2s_ctx, obj_table) == 8);
static_assert(offsetof(j2s_ctx, struct_count) == 16 && offsetof(j2s_ctx, struct_table) == 20);
static_assert(offsetof(j2s_ctx, enum_count) == 28 && offsetof(j2s_ctx, enum_table) == 32);
static_assert(offsetof(j2s_ctx, enum_value_count) == 40);
static_assert(offsetof(j2s_ctx, enum_value_table) == 44);
static_assert(offsetof(j2s_ctx, desc_count) == 52 && offsetof(j2s_ctx, desc_table) == 56);
static_assert(offsetof(j2s_ctx, root_struct) == 64 && offsetof(j2s_ctx, pretty_print) == 68);
static_assert(offsetof(j2s_ctx, emit_desc) == 69 && offsetof(j2s_ctx, emit_enums) == 70);
static_assert(offsetof(j2s_ctx, owns_data) == 71 && offsetof(j2s_ctx, data_list) == 72);

#pragma pack(pop)

// --- Context -----------------------------------------------------------------------------------

// Points `ctx` at the compiled-in tables, or at an equal copy in the cache file.
//
// The cache is the file that the environment variable J2S_CACHE names (at most 255 bytes, a longer
// value aborts the process), else /var/cache/j2s-cache; J2S_NO_CACHE, set to anything, keeps the
// library away from it. A cache is used only if it is a regular file of this user and holds exactly
// the compiled-in tables; otherwise it is rewritten. Failures here are
// not errors. A cache brings its own three output flags; without one they stay as the caller set
// them.
void j2s_init(j2s_ctx* ctx);

// Frees the registry and the buffers it owns. Pointers that conversions stored in structures
// dangle afterwards, and so do data_list and (with a cache) the tables: j2s_init comes before any
// further use of the context.
void j2s_deinit(j2s_ctx* ctx);

// --- Structure to JSON -------------------------------------------------------------------------

// Converts the structure of that name (null: the context's root) at `ptr`.
// Returns an object that the caller deletes; null for an unknown name or a structure without
// members. A member that cannot be converted is left out. A null `ptr` reads as zeros.
cJSON* j2s_struct_to_json(j2s_ctx* ctx, const char* name, const void* ptr);

// As j2s_struct_to_json, for a tree that is only going to be printed: by cJSON_Print when
// `formatted`, else by cJSON_PrintUnformatted. Arrays of integers in it are raw texts instead of
// lists of items; the printed bytes are the same, at a small part of the cost.
cJSON* j2s_struct_to_printable(j2s_ctx* ctx, const char* name, const void* ptr, bool formatted);

// Does the same to any tree, with the arrays in which every number is an integer. `json` may be
// null. An array stays as it is when memory runs out.
void j2s_make_printable(cJSON* json, bool formatted);

// As j2s_struct_to_json, printed as the context's flags say. The caller frees the text with free.
char* j2s_dump_struct(j2s_ctx* ctx, const char* name, const void* ptr);

// Returns an object {enumeration: {constant: value}} that the caller deletes, or null when the
// tables hold no enumeration.
cJSON* j2s_enums_to_json(j2s_ctx* ctx);

// The same for a structure's or a member's index. `ptr` is always the start of the structure that
// holds the member, never the member itself.
cJSON* _j2s_struct_to_json(j2s_ctx* ctx, int struct_index, const void* ptr);
cJSON* _j2s_obj_to_json(j2s_ctx* ctx, int obj_index, const void* ptr);

// Process-wide switch, off at start: while on, structures convert to a skeleton document without
// being read: strings empty, numbers 0, dynamic arrays with one element.
void _j2s_set_template(bool on);

// --- JSON to structure -------------------------------------------------------------------------

// Loads `json` into the structure of that name (null: the context's root) at `ptr`, which must
// hold valid or zeroed members: a char* that is not null is freed and replaced.
//
// Tolerant by design: a member without JSON keeps its value, a key without member is ignored, an
// array may be shorter than the member. A number is truncated toward zero and saturates (at 32
// bits for the narrower types, which then keep the low bits: 300 in a uint8 is 44); anything
// else is 0, or NaN in a float. An array's sibling "@NAME_index" lists the slots to be written.
//
// A dynamic array whose length changes gets a new, zeroed buffer before its elements are loaded.
// The length comes from the length member's item, else from the number of elements. An array
// without an item keeps its buffer; the load fails if the length would then exceed it. A length
// below 0 or above 65535 fails for an array with an item, and so does a lack of memory.
//
// An item may be raw JSON text, as j2s/shallow_tree.h makes it, and is loaded as what the text
// says.
//
// Strings are plain heap copies, the caller's to free: those in a dynamic array before a load that
// may change its length. Dynamic arrays belong to the context.
// Returns 0, or negative at the first failure; members loaded before it keep their new values.
// `json` may lose an index key that does not fit its member.
int j2s_json_to_struct(j2s_ctx* ctx, cJSON* json, const char* name, void* ptr);

// Loads one member: `item` is its JSON, `parent` the object that holds it, `ptr` the start of the
// structure. With `query` the other way round: `item` is rewritten in place from the structure,
// or replaced in `parent` if it is a dynamic array or has an index key (it lists the slots then).
int _j2s_json_to_obj(j2s_ctx* ctx, cJSON* item, cJSON* parent, int obj_index, void* ptr,
                     bool query);

// Stores a number in a member of type 1 to 10, with the conversions of j2s_json_to_struct.
void j2s_obj_set_value(j2s_ctx* ctx, int obj_index, void* ptr, double value);

#endif  // J2S_J2S_H_
