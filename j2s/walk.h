// The conversions of one member at one level. The direction to JSON also serves the query mode of
// the other one.
#ifndef J2S_WALK_H_
#define J2S_WALK_H_

#include <cstdio>

#include "j2s/j2s.h"
#include "j2s/json_owner.h"
#include "j2s/member.h"
#include "j2s/report.h"

namespace j2s {

using pq::JsonPtr;

// The form of integer arrays: real arrays, or texts that print alike (array_text.h).
enum class ArrayForm { kItems, kFormattedText, kCompactText };

// Null when the member can't be converted, after a message if that is a fault.
// `structure` is the start of what holds the member, as in all of these.
JsonPtr member_to_json(const j2s_ctx& ctx, const Member& member, const std::byte* structure,
                       ArrayForm form);

// 0, or negative when the walk has to end. See _j2s_json_to_obj.
int load_member(j2s_ctx& ctx, const Member& member, cJSON* item, cJSON* parent,
                std::byte* structure);

// Rewrites `item`, or replaces it in `parent`: it may be gone afterwards. The structure is only
// read, whatever length the JSON names. Results as load_member.
int query_member(const j2s_ctx& ctx, const Member& member, cJSON* item, cJSON* parent,
                 const std::byte* structure);

// The key beside an array that lists the slots meant: "@NAME_index".
class IndexKey {
 public:
  explicit IndexKey(const Member& member) {
    (void)std::snprintf(text_, sizeof text_, "@%s_index", member.name());
  }
  [[nodiscard]] const char* text() const { return text_; }

 private:
  char text_[kJ2sNameSize + 10];
};

// The list of slots in `parent`, null if there is none. One that does not go with the member is
// taken out of `parent` after a warning.
cJSON* find_index(const Member& array, cJSON* parent);

// True if `parent` has such a list, even one that does not go with the member.
bool has_index(const Member& array, const cJSON* parent);

// Moves `element`, the first one of `array`, to the slot that an item of the list asks for.
// False: there is no such slot.
//
// A negative slot counts backwards into the numbers before the array: part of the interface. It
// never reaches a pointer, a length, a structure or anything before the structure.
bool select_slot(const j2s_ctx& ctx, const Member& array, const cJSON* slot, Member& element);

// Messages that both directions share.
inline void report_missing_length(const char* function, const Member& member,
                                  int line = __builtin_LINE()) {
  report_error({function, line}, "dynamic array %s missing len", member.name());
}
inline void report_null_pointer(const char* function, const Member& member,
                                int line = __builtin_LINE()) {
  report_error({function, line}, "found null pointer at %s", member.name());
}

}  // namespace j2s

#endif  // J2S_WALK_H_
